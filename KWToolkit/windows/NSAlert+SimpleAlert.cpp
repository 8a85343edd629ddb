// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/NSAlert+SimpleAlert.h>

#include <KWToolkit/platform/ui/NSAlert.h>

namespace kw {

void simpleWarningAlertWithTitle(
    const std::string& title, const std::string& text, const std::string& buttonText) {
    NSAlert alert;
    alert.addButtonWithTitle(buttonText);
    alert.setMessageText(title);
    alert.setInformativeText(text);
    alert.setAlertStyle(NSAlertStyle::warning);
    alert.runModal();
}

} // namespace kw
