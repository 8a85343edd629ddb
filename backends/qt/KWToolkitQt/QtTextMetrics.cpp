// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtTextMetrics.h>

#include <KWToolkitQt/TextLayout.h>

#include <QGuiApplication>
#include <QImage>

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

} // namespace kw::qt
