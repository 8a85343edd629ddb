// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The hotkey record: how a hotkey is described, kept by a host and shown to a user.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/PropertyList.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kw {

/// A full record has all six entries. A modifier record has the four booleans only: the modifiers
/// that are held while a hotkey is still being composed. A host keeps a record as it likes, for
/// example in its defaults.
///
/// Reading a record never fails: a modifier that is missing or no boolean counts as not held, a
/// number that is missing or no integer counts as 0, integers are reduced to 16 bits, and other
/// entries are ignored. Only the presence of the key code says whether a record names a key.
using HotkeyRecord = PropertyMap;

/// The character of the key with modifiers ignored, an unsigned 16-bit UTF-16 unit.
inline constexpr const char* KWHotkeyValue = "KWHotkeyValue";
/// The code of the key's position, an unsigned 16-bit number. 0 is a key like any other.
inline constexpr const char* KWKeycodeValue = "KWKeycodeValue";
inline constexpr const char* KWCmdModifier = "KWCmdModifier"; ///< boolean
inline constexpr const char* KWAltModifier = "KWAltModifier"; ///< boolean
inline constexpr const char* KWControlModifier = "KWControlModifier"; ///< boolean
inline constexpr const char* KWShiftModifier = "KWShiftModifier"; ///< boolean

/// A hotkey as plain values, for code that acts on it.
struct Hotkey {
    bool hasKey = false; ///< whether it names a key at all
    std::uint16_t keycode = 0;
    char16_t character = 0;
    bool command = false;
    bool option = false;
    bool control = false;
    bool shift = false;
    friend bool operator==(const Hotkey&, const Hotkey&) = default;
};

/// Reads a record of either shape.
KW_EXPORT Hotkey hotkeyFromRecord(const HotkeyRecord& record);

/// Sets the six entries of a full record, and leaves any others alone.
KW_EXPORT void fillHotkeyRecord(HotkeyRecord& record, bool command, bool alternate, bool control,
    bool shift, std::uint16_t keycode, std::uint16_t hotkey);

/// Sets the four entries of a modifier record, and leaves any others alone.
KW_EXPORT void fillModifierHotkeyRecord(
    HotkeyRecord& record, bool command, bool alternate, bool control, bool shift);

/// The record as a user reads it, such as "⌥ ⌘ K" or "⌃ F5": the held modifiers, each followed by a
/// blank, in the order Option, Shift, Control, Command, then the key as the current keyboard layout
/// prints it. Always valid UTF-8.
KW_EXPORT std::string renderHotkeyRecord(const HotkeyRecord& record);

/// The UTF-16 unit that the current keyboard layout gives for a key pressed alone, 0 if it gives
/// none.
KW_EXPORT char16_t unicharFromKeycode(std::uint16_t keycode);

/// The key on which the current keyboard layout prints a character, the one of the smallest code
/// where there are several, or nothing. Letters are printed small: ask for u'k'.
KW_EXPORT std::optional<std::uint16_t> keycodeFromUnichar(char16_t character);

} // namespace kw
