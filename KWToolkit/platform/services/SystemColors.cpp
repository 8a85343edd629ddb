// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/SystemColors.h>

namespace kw {

SystemColors::~SystemColors() = default;

NSColor PlainSystemColors::color(SystemColor color) {
    switch (color) {
    case SystemColor::controlText:
        break;
    case SystemColor::textBackground:
        return NSColor::whiteColor();
    }
    return NSColor::blackColor();
}

} // namespace kw
