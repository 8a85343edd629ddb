// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/KWHotkeyObject.h>

namespace kw {

Class& KWHotkeyObject::classObject() {
    static auto& object = *new Class("KWHotkeyObject", NSObject::classObject());
    return object;
}

void KWHotkeyObject::performAction() const {
    if (m_callable)
        m_callable();
    else if (const auto target = _target())
        target->performSelector(m_action);
}

} // namespace kw
