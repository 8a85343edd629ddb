// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/x11/Xcb.h>

#include <cstdint>
#include <vector>

namespace kw {

/// Which of the X server's modifier bits stand for what, as the keyboard's mapping has it.
struct X11Modifiers {
    std::uint16_t command = XCB_MOD_MASK_4; ///< Super
    std::uint16_t option = XCB_MOD_MASK_1; ///< Alt
    /// CapsLock, NumLock, ScrollLock: what is no part of a combination.
    std::uint16_t locks = XCB_MOD_MASK_LOCK;

    /// Asks the server. Modifiers that no key has keep their usual bits.
    static X11Modifiers of(xcb_connection_t* connection);

    /// The bits of hotkey modifier masks.
    std::uint16_t bits(std::uint32_t hotkeyModifiers) const;
    /// The same with each combination of locks.
    std::vector<std::uint16_t> bitsWithLocks(std::uint16_t bits) const;
    /// What is left of an event's state without locks, pointer buttons and groups.
    std::uint16_t bitsOfState(std::uint16_t state) const { return state & 0xff & ~locks; }

    friend bool operator==(const X11Modifiers&, const X11Modifiers&) = default;
};

} // namespace kw
