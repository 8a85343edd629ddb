// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/KWFileThumbnail.h>

#include <KWToolkit/imaging/Resampling.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

namespace kw {

namespace {

/// The decoder may reduce a picture to no less than so many times its shown size: what it leaves
/// is scaled better.
constexpr std::int64_t reserve = 2;

PixelSize transposed(PixelSize size, ImageOrientation orientation) {
    return isTransposed(orientation) ? PixelSize {size.height, size.width} : size;
}

/// In proportion, within the box and no larger than it is; else the box.
PixelSize shownSize(PixelSize box, PixelSize picture, bool preserveRatio) {
    if (!preserveRatio)
        return box;
    const auto width = static_cast<double>(picture.width);
    const auto height = static_cast<double>(picture.height);
    const double factor = std::min(
        {1.0, static_cast<double>(box.width) / width, static_cast<double>(box.height) / height});
    return {std::max<std::int64_t>(1, std::llround(width * factor)),
        std::max<std::int64_t>(1, std::llround(height * factor))};
}

/// A picture of any depth at another size.
CGImageRef scaledTo(
    const CGImage& image, PixelSize size, NSImageInterpolation interpolation, float alpha) {
    if (!isCanvas(size.width, size.height))
        return nullptr;
    const CGImageLayout layout = CGImageLayout::premultipliedRGBA(size.width, size.height);
    const auto pixels = makeUnsetPixels(layout.byteCount());
    if (!pixels
        || !drawScaled(image, {0, 0, size.width, size.height}, interpolation,
            static_cast<double>(alpha), pixels.get(), layout))
        return nullptr;
    return CGImage::create(layout, pixels);
}

/// Where an upright picture's pixels are stored: x and y change places, then each may run backward.
struct Turn {
    bool swaps, mirrorsX, mirrorsY;
};
constexpr std::array<Turn, 8> turns {{
    {false, false, false},
    {false, true, false},
    {false, true, true},
    {false, false, true},
    {true, false, false},
    {true, false, true},
    {true, true, true},
    {true, true, false},
}};

/// The picture upright and in the middle of a canvas.
CGImageRef placedUpright(const CGImageRef& image, ImageOrientation orientation, PixelSize canvas) {
    const CGImageLayout layout = CGImageLayout::premultipliedRGBA(canvas.width, canvas.height);
    const auto pixels = makePixels(layout.byteCount());
    if (!pixels)
        return nullptr;
    const Turn& turn = turns.at(static_cast<std::size_t>(orientation - 1));
    const PixelSize shown = transposed({image->width(), image->height()}, orientation);
    const std::int64_t left = (canvas.width - shown.width) / 2;
    const std::int64_t top = (canvas.height - shown.height) / 2;
    for (std::int64_t y = 0; y < shown.height; ++y) {
        std::uint8_t* to = pixels.get() + (top + y) * layout.bytesPerRow + 4 * left;
        for (std::int64_t x = 0; x < shown.width; ++x, to += 4) {
            const std::int64_t storedX = turn.swaps ? y : x;
            const std::int64_t storedY = turn.swaps ? x : y;
            std::memcpy(to,
                image->row(turn.mirrorsY ? image->height() - 1 - storedY : storedY)
                    + 4 * (turn.mirrorsX ? image->width() - 1 - storedX : storedX),
                4);
        }
    }
    return CGImage::create(layout, pixels);
}

} // namespace

std::shared_ptr<NSBitmapImageRep> thumbFromFile(const std::string& path, NSSize box,
    bool preserveRatio, bool keepSquareRect, NSImageInterpolation imageInterpolation,
    bool /*shouldAntialias*/, bool /*correctWithColorProfile*/, float alpha) {
    const auto boxWidth = wholePixels(box.width);
    const auto boxHeight = wholePixels(box.height);
    if (!boxWidth || !boxHeight || !isCanvas(*boxWidth, *boxHeight))
        return nullptr;
    const PixelSize boxPixels {*boxWidth, *boxHeight};

    PixelSize size; // as stored
    const auto wantedSize = [&](PixelSize stored, ImageOrientation orientation) -> PixelSize {
        size = transposed(
            shownSize(boxPixels, transposed(stored, orientation), preserveRatio), orientation);
        return {reserve * size.width, reserve * size.height};
    };
    const auto [image, told] = Platform::imageDecoder().reducedImageFromFile(path, wantedSize);
    const ImageOrientation orientation = told >= 1 && told <= 8 ? told : 1;
    const CGImageRef scaled = image ? scaledTo(*image, size, imageInterpolation, alpha) : nullptr;
    if (!scaled)
        return nullptr;
    const PixelSize shown = transposed(size, orientation);
    const PixelSize canvas = keepSquareRect ? boxPixels : shown;
    return NSBitmapImageRep::initWithCGImage(
        orientation == 1 && canvas == shown ? scaled : placedUpright(scaled, orientation, canvas));
}

} // namespace kw
