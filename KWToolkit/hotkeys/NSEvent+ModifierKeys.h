// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Which modifier keys were down.
#pragma once

#include <KWToolkit/platform/ui/NSEvent.h>

namespace kw {

constexpr bool isShiftKeyDown(const NSEvent& event) {
    return (event.modifierFlags & NSEventModifierFlagShift) != 0;
}
constexpr bool isControlKeyDown(const NSEvent& event) {
    return (event.modifierFlags & NSEventModifierFlagControl) != 0;
}
constexpr bool isOptionKeyDown(const NSEvent& event) {
    return (event.modifierFlags & NSEventModifierFlagOption) != 0;
}
constexpr bool isCommandKeyDown(const NSEvent& event) {
    return (event.modifierFlags & NSEventModifierFlagCommand) != 0;
}

} // namespace kw
