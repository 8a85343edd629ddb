// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtAlertService.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

namespace kw::qt {

namespace {

/// Without mnemonics.
QString title(const std::string& text) { return QString::fromStdString(text).replace('&', "&&"); }

QMessageBox::Icon iconOf(NSAlertStyle style) {
    switch (style) {
    case NSAlertStyle::informational:
        return QMessageBox::Information;
    case NSAlertStyle::critical:
        return QMessageBox::Critical;
    default:
        return QMessageBox::Warning;
    }
}

QCheckBox* makeCheckBox(const NSSuppressionButton& button, QWidget* parent) {
    // Qt has no title of its own for it.
    auto* const checkBox = new QCheckBox("Do not show this again", parent);
    checkBox->setChecked(button.isOn);
    // The sizes are those of another desktop's interface: what counts is how they compare.
    QFont font = checkBox->font();
    const double scale = button.font.size > 0 ? button.font.size / NSFont::systemFontSize : 1;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else
        font.setPixelSize(std::max(1, qRound(font.pixelSize() * scale)));
    checkBox->setFont(font);
    return checkBox;
}

/// In the order of the alert's.
QList<QPushButton*> addButtons(QMessageBox& box, std::vector<std::string> titles) {
    if (titles.empty())
        titles.emplace_back("OK");
    QList<QPushButton*> buttons;
    for (const std::string& text : titles)
        buttons += box.addButton(title(text), QMessageBox::AcceptRole);
    box.setDefaultButton(buttons.front());
    // Else Qt takes one of them for Escape, or lets nobody close the box.
    QPushButton* const none = box.addButton(QMessageBox::Cancel);
    none->hide();
    box.setEscapeButton(none);
    return buttons;
}

} // namespace

int QtAlertService::runModal(NSAlert& alert) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return UnavailableAlertService().runModal(alert);

    // The window may be destroyed while the box waits, and the box with it.
    const QPointer<QMessageBox> box = new QMessageBox(QApplication::activeWindow());
    box->setIcon(iconOf(alert.alertStyle()));
    box->setText(QString::fromStdString(alert.messageText()));
    box->setInformativeText(QString::fromStdString(alert.informativeText()));
    for (QLabel* const label : box->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    const auto buttons = addButtons(*box, alert.buttons());
    if (alert.showsSuppressionButton())
        box->setCheckBox(makeCheckBox(alert.suppressionButton(), box));
    box->exec();
    if (!box)
        return 0;
    if (box->checkBox())
        alert.suppressionButton().isOn = box->checkBox()->isChecked();
    const auto chosen = buttons.indexOf(static_cast<QPushButton*>(box->clickedButton()));
    delete box;
    return chosen < 0 ? 0 : NSAlertFirstButtonReturn + static_cast<int>(chosen);
}

} // namespace kw::qt
