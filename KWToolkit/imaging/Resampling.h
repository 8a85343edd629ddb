// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Draws images at other sizes.
#pragma once

#include <KWToolkit/imaging/KWScaledImage.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <cmath>
#include <cstdint>

namespace kw {

/// Whole pixels of a canvas whose origin is its lower left corner.
struct PixelRect {
    std::int64_t x, y, width, height;
};

/// A side in whole pixels; 0 for what is no number or beyond all bounds.
inline std::int64_t wholePixels(double side) {
    return std::fabs(side) < 0x1p62 ? static_cast<std::int64_t>(side) : 0;
}

/// Draws an image of 8 bits a component into a rectangle of a transparent canvas (premultiplied
/// RGBA, rows without padding and from the top down), cut off at the canvas's edges. False where
/// there is no memory for it.
bool drawScaled(const CGImage& image, const PixelRect& rect, std::int32_t interpolationQuality,
    double alpha, std::uint8_t* canvas, const CGImageLayout& canvasLayout);

} // namespace kw
