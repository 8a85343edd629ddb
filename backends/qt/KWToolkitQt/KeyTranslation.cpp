// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/KeyTranslation.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Unicode.h>

#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kw::qt {

namespace {

constexpr std::pair<Qt::KeyboardModifier, std::uint32_t> modifierTable[] {
    {Qt::ShiftModifier, NSEventModifierFlagShift},
    {Qt::ControlModifier, NSEventModifierFlagControl},
    {Qt::AltModifier, NSEventModifierFlagOption},
    {Qt::MetaModifier, NSEventModifierFlagCommand},
    {Qt::KeypadModifier, NSEventModifierFlagNumericPad},
};

constexpr Qt::Key modifierKeys[] {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr,
    Qt::Key_Meta, Qt::Key_Super_L, Qt::Key_Super_R, Qt::Key_Hyper_L, Qt::Key_Hyper_R,
    Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_Mode_switch, Qt::Key_Multi_key};

constexpr std::pair<Qt::Key, char16_t> functionKeys[] {
    {Qt::Key_Up, NSUpArrowFunctionKey},
    {Qt::Key_Down, NSDownArrowFunctionKey},
    {Qt::Key_Left, NSLeftArrowFunctionKey},
    {Qt::Key_Right, NSRightArrowFunctionKey},
    {Qt::Key_Return, NSCarriageReturnCharacter},
    {Qt::Key_Enter, NSEnterCharacter},
    {Qt::Key_Tab, NSTabCharacter},
    {Qt::Key_Backtab, NSBackTabCharacter},
    {Qt::Key_Escape, NSEscapeCharacter},
    {Qt::Key_Backspace, NSDeleteCharacter},
    {Qt::Key_Insert, NSInsertFunctionKey},
    {Qt::Key_Delete, NSDeleteFunctionKey},
    {Qt::Key_Home, NSHomeFunctionKey},
    {Qt::Key_End, NSEndFunctionKey},
    {Qt::Key_PageUp, NSPageUpFunctionKey},
    {Qt::Key_PageDown, NSPageDownFunctionKey},
    {Qt::Key_Print, NSPrintScreenFunctionKey},
    {Qt::Key_SysReq, NSPrintScreenFunctionKey}, // the same key, with Alt
    {Qt::Key_ScrollLock, NSScrollLockFunctionKey},
    {Qt::Key_Pause, NSPauseFunctionKey},
    {Qt::Key_Menu, NSMenuFunctionKey},
    {Qt::Key_Help, NSHelpFunctionKey},
};

char16_t functionKeyCharacter(int key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return static_cast<char16_t>(NSF1FunctionKey + (key - Qt::Key_F1));
    const auto* const found =
        std::ranges::find(functionKeys, key, [](const auto& entry) { return entry.first; });
    return found == std::end(functionKeys) ? 0 : found->second;
}

/// What Qt itself says the key types. Its codes of printing keys are code points, letters in
/// capitals; dead keys and what lies beyond U+FFFF are none.
char16_t keysOwnCharacter(int key, bool shift) {
    constexpr int firstNonCharacter = 0x10000;
    if (key >= firstNonCharacter)
        return 0;
    const QChar character(static_cast<char16_t>(key));
    return (shift ? character : character.toLower()).unicode();
}

char16_t characterIgnoringModifiers(const QKeyEvent& event) {
    if (const char16_t character = functionKeyCharacter(event.key()))
        return character;
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    // The keypad prints what NumLock makes of it, which a layout's plain character does not tell.
    if (!event.modifiers().testFlag(Qt::KeypadModifier)) {
        const auto keyCode = static_cast<std::uint16_t>(event.nativeScanCode());
        if (const char16_t character =
                Platform::keyboardLayout().characterForKeyCode(keyCode, shift))
            return character;
    }
    return keysOwnCharacter(event.key(), shift);
}

} // namespace

std::uint32_t modifierFlags(Qt::KeyboardModifiers modifiers) {
    std::uint32_t flags = 0;
    for (const auto& [modifier, flag] : modifierTable)
        flags |= modifiers.testFlag(modifier) ? flag : 0;
    return flags;
}

bool isModifierKey(const QKeyEvent& event) {
    return std::ranges::find(modifierKeys, event.key()) != std::end(modifierKeys);
}

NSEvent keyEvent(const QKeyEvent& event) {
    NSEvent result;
    result.timestamp = Platform::clock().now();
    result.keyCode = static_cast<std::uint16_t>(event.nativeScanCode());
    result.isARepeat = event.isAutoRepeat();
    if (isModifierKey(event)) {
        result.type = NSEvent::Type::flagsChanged;
        // The event of a real key cannot tell: on X11 Alt with Shift held comes as the Meta key,
        // and the release of one of two Shift keys as the release of Shift.
        result.modifierFlags =
            modifierFlags(event.nativeScanCode() != 0 ? QGuiApplication::queryKeyboardModifiers()
                                                      : event.modifiers());
        return result;
    }

    result.type =
        event.type() == QEvent::KeyRelease ? NSEvent::Type::keyUp : NSEvent::Type::keyDown;
    result.modifierFlags = modifierFlags(event.modifiers());
    if (const char16_t character = characterIgnoringModifiers(event)) {
        appendUnit(result.charactersIgnoringModifiers, character);
        if (character >= NSUpArrowFunctionKey && character <= 0xF8FF)
            result.modifierFlags |= NSEventModifierFlagFunction;
    }
    return result;
}

} // namespace kw::qt
