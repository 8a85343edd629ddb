// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSControl.h>

#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

Class& NSControl::classObject() {
    static auto& object = *new Class("NSControl", NSView::classObject(), {},
        {
            property("enabled", &NSControl::isEnabled, &NSControl::setEnabled),
        });
    return object;
}

void NSControl::setEnabled(bool enabled) {
    if (std::exchange(m_isEnabled, enabled) == enabled)
        return;
    setNeedsDisplay();
    setNeedsPeerUpdate();
}

bool NSControl::sendAction() {
    const auto receiver = target();
    if (!m_action || !receiver || !receiver->respondsToSelector(m_action))
        return false;
    if (m_action.name().ends_with(':'))
        send(*receiver, m_action, *this);
    else
        send(*receiver, m_action);
    return true;
}

} // namespace kw
