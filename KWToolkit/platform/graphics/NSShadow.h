// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

namespace kw {

/// A shadow under what is drawn.
struct NSShadow {
    NSColor color = NSColor::colorWithCalibratedWhite(0, 1.0 / 3);
    NSSize offset; ///< in points of the base coordinates: y up, also in a flipped view
    double blurRadius = 0; ///< 0 is a hard edge
    friend bool operator==(const NSShadow&, const NSShadow&) = default;
};

} // namespace kw
