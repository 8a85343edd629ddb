// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>

namespace kw {

/// What the current keyboard layout prints on its keys. Used on the main thread.
class KW_EXPORT KeyboardLayout {
public:
    virtual ~KeyboardLayout();

    /// The character of a key pressed alone, or with Shift only, as one UTF-16 unit under the
    /// layout and group in force now. 0 for a key that yields none (dead keys, function keys,
    /// unknown codes, characters beyond U+FFFF) and where there is no keyboard to ask.
    virtual char16_t characterForKeyCode(std::uint16_t keyCode, bool shift = false) = 0;
};

/// The layout of a machine without a keyboard: no key yields a character.
class KW_EXPORT UnavailableKeyboardLayout final : public KeyboardLayout {
public:
    char16_t characterForKeyCode(std::uint16_t, bool) override { return 0; }
};

} // namespace kw
