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
    // Last: whoever is told may let go of the control.
    if (!enabled)
        giveUpFirstResponder();
}

void NSControl::giveUpFirstResponder() {
    NSWindow* const shownIn = window();
    const auto* const first =
        shownIn ? dynamic_cast<const NSView*>(&shownIn->firstResponder()) : nullptr;
    if (first && first->isDescendantOf(*this))
        shownIn->makeFirstResponder(nullptr);
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
