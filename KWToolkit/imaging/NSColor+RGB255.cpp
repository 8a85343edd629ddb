// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSColor+RGB255.h>

namespace kw {

NSColor colorWith255Red(float red, float green, float blue, float alpha) {
    return NSColor::colorWithCalibratedRed(red / 255.0F, green / 255.0F, blue / 255.0F, alpha);
}

} // namespace kw
