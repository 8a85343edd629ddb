// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSImage+Reflection.h>

#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

namespace kw {

namespace {

struct Stop {
    double location, alpha;
};
constexpr Stop stops[] {{0, 0}, {0.5, 0.2}, {1, 0.5}};

/// The gradient's opacity; its color does not show.
double opacityAt(double location) {
    for (std::size_t i = 1; i < std::size(stops); ++i) {
        const Stop& from = stops[i - 1];
        const Stop& to = stops[i];
        if (location <= to.location)
            return from.alpha
                + (to.alpha - from.alpha) * (std::max(location, from.location) - from.location)
                / (to.location - from.location);
    }
    return stops[std::size(stops) - 1].alpha;
}

NSBitmapImageRep* finestBitmap(const NSImage& image) {
    NSBitmapImageRep* finest = nullptr;
    for (const auto& representation : image.representations()) {
        auto* const bitmap = dynamic_cast<NSBitmapImageRep*>(representation.get());
        if (bitmap
            && (!finest
                || bitmap->pixelsWide() * bitmap->pixelsHigh()
                    > finest->pixelsWide() * finest->pixelsHigh()))
            finest = bitmap;
    }
    return finest;
}

} // namespace

std::shared_ptr<NSImage> reflectedImageWithAmountReflected(const NSImage& image, float amount) {
    auto result = std::make_shared<NSImage>(image.size());
    result->setFlipped(true);
    const NSBitmapImageRep* const bitmap = finestBitmap(image);
    if (!bitmap)
        return result;
    const CGImageLayout& source = bitmap->layout();
    const CGImageLayout layout = CGImageLayout::premultipliedRGBA(source.width, source.height);
    const auto reflection = NSBitmapImageRep::initWithLayout(layout);
    if (!reflection)
        return result;

    // The band in rows of pixels, y down. The comparison is false for what is no number.
    const double band =
        amount > 0 ? static_cast<double>(source.height) * static_cast<double>(amount) : 0;
    const double begin = image.isFlipped() ? band : 0;
    std::uint8_t* const pixels = reflection->bitmapData();
    for (std::int64_t y = 0; y < source.height; ++y) {
        const double top = std::max(static_cast<double>(y), begin);
        const double bottom = std::min(static_cast<double>(y + 1), begin + band);
        if (!(top < bottom))
            continue;
        const double covered = bottom - top;
        const double opacity = opacityAt(((top + bottom) / 2 - begin) / band) * covered;
        const auto alpha = static_cast<std::uint8_t>(std::lround(opacity * 255));
        std::uint8_t* const row = pixels + y * layout.bytesPerRow;
        readPremultipliedRGBA(source,
            std::as_const(*bitmap).bitmapData() + (source.height - 1 - y) * source.bytesPerRow, 0,
            source.width, row);
        for (std::uint8_t& component : std::span(row, static_cast<std::size_t>(layout.bytesPerRow)))
            component = multiplied(component, alpha);
    }
    reflection->setSize(result->size());
    result->addRepresentation(reflection);
    return result;
}

} // namespace kw
