// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/HotkeyRecord.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/platform/ui/NSEvent.h>

#include <array>
#include <string_view>

namespace kw {

namespace {

// Indexed by the character less 0xF700. The blanks are part of the texts.
constexpr std::array<std::string_view, 19> functionKeyTexts {"↑ ", "↓ ", "← ", "→ ", "F1", "F2",
    "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "F11", "F12", "F13", "F14", "F15"};
constexpr char16_t f16FunctionKey = 0xF713;

bool booleanIn(const HotkeyRecord& record, const char* key) {
    const auto found = record.find(key);
    const bool* const value = found == record.end() ? nullptr : found->second.boolean();
    return value && *value;
}

std::uint16_t numberIn(const HotkeyRecord& record, const char* key) {
    const auto found = record.find(key);
    const std::int64_t* const value = found == record.end() ? nullptr : found->second.integer();
    return value ? static_cast<std::uint16_t>(*value) : 0;
}

/// The name of a key that no letter stands for, or nothing.
std::string_view specialText(char16_t character) {
    if (static_cast<std::int16_t>(character) > 8) {
        switch (character) {
        case u' ':
            return "Space";
        case NSCarriageReturnCharacter:
            return "↩ ";
        case NSTabCharacter:
            return "⇥ ";
        default:
            return {};
        }
    }
    const auto index = static_cast<std::uint16_t>(character + 0x900);
    if (index < functionKeyTexts.size())
        return functionKeyTexts[index];
    return character == f16FunctionKey ? "F16" : std::string_view();
}

std::string keyText(const Hotkey& hotkey) {
    const char16_t printed = unicharFromKeycode(hotkey.keycode);
    std::string text;
    // Deliberate: the layout's letter wins over the recorded character, and only these letters are
    // made capital.
    if (printed >= u'a' && printed <= u'z')
        appendUnit(text, printed - 0x20);
    else if (const auto special = specialText(hotkey.character); !special.empty())
        text = special;
    else
        appendUnit(text, printed);
    return text;
}

} // namespace

Hotkey hotkeyFromRecord(const HotkeyRecord& record) {
    return {
        .hasKey = record.contains(KWKeycodeValue),
        .keycode = numberIn(record, KWKeycodeValue),
        .character = static_cast<char16_t>(numberIn(record, KWHotkeyValue)),
        .command = booleanIn(record, KWCmdModifier),
        .option = booleanIn(record, KWAltModifier),
        .control = booleanIn(record, KWControlModifier),
        .shift = booleanIn(record, KWShiftModifier),
    };
}

void fillHotkeyRecord(HotkeyRecord& record, bool command, bool alternate, bool control, bool shift,
    std::uint16_t keycode, std::uint16_t hotkey) {
    record.insert_or_assign(KWHotkeyValue, hotkey);
    record.insert_or_assign(KWKeycodeValue, keycode);
    fillModifierHotkeyRecord(record, command, alternate, control, shift);
}

void fillModifierHotkeyRecord(
    HotkeyRecord& record, bool command, bool alternate, bool control, bool shift) {
    record.insert_or_assign(KWCmdModifier, command);
    record.insert_or_assign(KWAltModifier, alternate);
    record.insert_or_assign(KWControlModifier, control);
    record.insert_or_assign(KWShiftModifier, shift);
}

std::string renderHotkeyRecord(const HotkeyRecord& record) {
    const Hotkey hotkey = hotkeyFromRecord(record);
    std::string text;
    // Deliberate: not the usual order, in which Control comes first.
    if (hotkey.option)
        text += "⌥ ";
    if (hotkey.shift)
        text += "⇧ ";
    if (hotkey.control)
        text += "⌃ ";
    if (hotkey.command)
        text += "⌘ ";
    if (hotkey.hasKey)
        text += keyText(hotkey);
    return text;
}

char16_t unicharFromKeycode(std::uint16_t keycode) {
    return Platform::keyboardLayout().characterForKeyCode(keycode);
}

std::optional<std::uint16_t> keycodeFromUnichar(char16_t character) {
    constexpr std::uint16_t largestKeycode = 255; // of any keyboard
    for (std::uint16_t keycode = 0; character != 0 && keycode <= largestKeycode; ++keycode) {
        if (unicharFromKeycode(keycode) == character)
            return keycode;
    }
    return std::nullopt;
}

} // namespace kw
