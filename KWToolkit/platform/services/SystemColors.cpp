// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/SystemColors.h>

namespace kw {

SystemColors::~SystemColors() = default;

NSColor PlainSystemColors::color(SystemColor color) {
    switch (color) {
    case SystemColor::controlText:
    case SystemColor::selectedText:
        return NSColor::blackColor();
    case SystemColor::textBackground:
        return NSColor::whiteColor();
    case SystemColor::selectedTextBackground:
        break;
    }
    return NSColor::colorWithCalibratedRed(0.7, 0.84, 1, 1);
}

} // namespace kw
