// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Draws images at other sizes.
#pragma once

#include <KWToolkit/imaging/KWScaledImage.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <cstdint>
#include <optional>

namespace kw {

/// Whether there may be a canvas of this size.
constexpr bool isCanvas(std::int64_t width, std::int64_t height) {
    constexpr std::int64_t maximumBytes = std::int64_t {1} << 32;
    return width >= 1 && height >= 1 && height <= maximumBytes / 4 / width;
}

/// Whole pixels of a canvas whose origin is its lower left corner.
struct PixelRect {
    std::int64_t x, y, width, height;
};

/// A side cut to whole pixels. Empty for 0 or less, and what is no number or beyond all bounds.
inline std::optional<std::int64_t> wholePixels(double side) {
    if (!(side > 0 && side < 0x1p62))
        return std::nullopt;
    return static_cast<std::int64_t>(side);
}

/// Draws an image of any depth into a rectangle of a transparent canvas (premultiplied RGBA, from
/// the top down), cut off at the canvas's edges. False where there is no memory for it.
bool drawScaled(const CGImage& image, const PixelRect& rect, std::int32_t interpolationQuality,
    double alpha, std::uint8_t* canvas, const CGImageLayout& canvasLayout);

} // namespace kw
