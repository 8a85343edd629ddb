// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtTextMetrics.h>

#include <KWToolkitQt/QtFonts.h>
#include <KWToolkitQt/TextLayout.h>

#include <QApplication>
#include <QImage>
#include <QPushButton>

namespace kw::qt {

NSSize QtTextMetrics::sizeOfText(std::string_view text, const TextAttributes& attributes) {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return NominalTextMetrics().sizeOfText(text, attributes);
    // An image has the primary screen's resolution of the moment.
    const QImage device(1, 1, QImage::Format_ARGB32_Premultiplied);
    const QSizeF size =
        textLayout(text, attributes.font, QFont::PreferDefault, device)->bounds().size();
    return {size.width(), size.height()};
}

NSSize QtTextMetrics::sizeOfButton(const NSAttributedString& title) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return NominalTextMetrics().sizeOfButton(title);
    const QPushButton button(toQString(title.string()).replace(u'&', QStringLiteral("&&")));
    const QSize size = button.sizeHint();
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

} // namespace kw::qt
