// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <cstdint>
#include <string>

namespace kw {

/// Device-independent modifier flags of an event.
enum NSEventModifierFlags : std::uint32_t {
    NSEventModifierFlagCapsLock = 1u << 16,
    NSEventModifierFlagShift = 1u << 17,
    NSEventModifierFlagControl = 1u << 18,
    NSEventModifierFlagOption = 1u << 19,
    NSEventModifierFlagCommand = 1u << 20,
    NSEventModifierFlagNumericPad = 1u << 21,
    NSEventModifierFlagFunction = 1u << 23,
};

/// Characters of keys that print nothing, as single UTF-16 units.
enum : char16_t {
    NSEnterCharacter = 0x0003,
    NSTabCharacter = 0x0009,
    NSCarriageReturnCharacter = 0x000D,
    NSBackTabCharacter = 0x0019,
    NSEscapeCharacter = 0x001B,
    NSDeleteCharacter = 0x007F, ///< the backspace key
    NSUpArrowFunctionKey = 0xF700,
    NSDownArrowFunctionKey = 0xF701,
    NSLeftArrowFunctionKey = 0xF702,
    NSRightArrowFunctionKey = 0xF703,
    NSF1FunctionKey = 0xF704, ///< F2 to F35 follow
    NSF35FunctionKey = 0xF726,
    NSInsertFunctionKey = 0xF727,
    NSDeleteFunctionKey = 0xF728, ///< forward delete
    NSHomeFunctionKey = 0xF729,
    NSEndFunctionKey = 0xF72B,
    NSPageUpFunctionKey = 0xF72C,
    NSPageDownFunctionKey = 0xF72D,
    NSPrintScreenFunctionKey = 0xF72E,
    NSScrollLockFunctionKey = 0xF72F,
    NSPauseFunctionKey = 0xF730,
    NSMenuFunctionKey = 0xF735,
    NSHelpFunctionKey = 0xF746,
};

/// Something the user did.
struct NSEvent {
    enum class Type {
        leftMouseDown,
        leftMouseUp,
        leftMouseDragged,
        mouseMoved,
        mouseEntered,
        mouseExited,
        keyDown,
        keyUp,
        flagsChanged,
    };

    Type type = Type::keyDown;
    std::uint32_t modifierFlags = 0;
    double timestamp = 0; ///< seconds of the platform's clock
    NSPoint locationInWindow; ///< in the root view's coordinates, y up

    // Keys.
    std::uint16_t keyCode = 0; ///< the key's position; on X11 the X key code
    /// What the key types with no modifier but Shift, in UTF-8; empty for a dead key.
    std::string charactersIgnoringModifiers;
    bool isARepeat = false;

    // Mouse.
    int clickCount = 0;
};

} // namespace kw
