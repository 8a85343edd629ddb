// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/KWScaledImage.h>

#include <KWToolkit/imaging/Resampling.h>
#include <KWToolkit/platform/graphics/Pixels.h>

#include <cstdlib>
#include <optional>

namespace kw {

namespace {

/// `side * numerator / denominator`, multiplied first; empty where the product is no 64-bit number.
std::optional<std::int64_t> inProportion(
    std::int64_t side, std::int64_t numerator, std::int64_t denominator) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(side, numerator, &product))
        return std::nullopt;
    return product / denominator;
}

} // namespace

CGImageRef kwCreateScaledCGImageFromCGImage(const CGImageRef& image, std::int64_t width,
    std::int64_t height, bool preserveRatio, [[maybe_unused]] bool shouldAntialias,
    bool keepSquareRect, double alpha, std::int32_t interpolationQuality) {
    if (!image)
        return nullptr;

    PixelRect rect {0, 0, width, height};
    if (preserveRatio) {
        // Deliberate: a square takes the height, and the other side may become too long.
        const bool isLandscape = image->width() > image->height();
        const auto other = isLandscape ? inProportion(image->height(), width, image->width())
                                       : inProportion(image->width(), height, image->height());
        if (!other)
            return nullptr;
        (isLandscape ? rect.height : rect.width) = *other;
    }

    const std::int64_t canvasWidth = keepSquareRect ? width : rect.width;
    const std::int64_t canvasHeight = keepSquareRect ? height : rect.height;
    if (!isCanvas(canvasWidth, canvasHeight))
        return nullptr;
    if (keepSquareRect) {
        // Deliberate: what is larger than the canvas is moved by half of what it is larger, too.
        rect.x = std::abs(width - rect.width) / 2;
        rect.y = std::abs(height - rect.height) / 2;
    }

    // Deliberate: rows do not grow with the components, so an image of other than 8 bits a
    // component has no canvas.
    if (image->bitsPerComponent() != 8)
        return nullptr;
    // What the image covers need not be cleared.
    const bool isCovered =
        rect.width >= canvasWidth && rect.height >= canvasHeight && rect.x == 0 && rect.y == 0;
    const CGImageLayout layout = CGImageLayout::premultipliedRGBA(canvasWidth, canvasHeight);
    auto pixels = isCovered ? makeUnsetPixels(layout.byteCount()) : makePixels(layout.byteCount());
    if (!pixels || !drawScaled(*image, rect, interpolationQuality, alpha, pixels.get(), layout))
        return nullptr;
    return CGImage::create(layout, std::move(pixels));
}

} // namespace kw
