// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>

namespace kw {

char16_t HeadlessKeyboardLayout::characterForKeyCode(std::uint16_t keyCode, bool shift) {
    const auto found = m_keys.find(keyCode);
    if (found == m_keys.end())
        return 0;
    return shift ? found->second.shifted : found->second.plain;
}

} // namespace kw
