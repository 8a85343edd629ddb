// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/CGImage.h>

#include <limits>
#include <utility>

namespace kw {

namespace {

constexpr std::int64_t maximumSide = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t maximumBytes = std::int64_t {1} << 40;

bool isFirst(CGImageAlphaInfo info) {
    return info == CGImageAlphaInfo::premultipliedFirst || info == CGImageAlphaInfo::first
        || info == CGImageAlphaInfo::noneSkipFirst;
}

} // namespace

CGImageLayout CGImageLayout::premultipliedRGBA(std::int64_t width, std::int64_t height) {
    return {.width = width, .height = height, .bytesPerRow = 4 * width};
}

bool CGImageLayout::isValid() const {
    if (width < 1 || height < 1 || width > maximumSide || height > maximumSide)
        return false;
    const bool isAlone = alphaInfo == CGImageAlphaInfo::none;
    const bool isSmallGray =
        (bitsPerComponent == 1 || bitsPerComponent == 2 || bitsPerComponent == 4)
        && CGColorSpaceGetModel(colorSpace) == CGColorSpaceModel::monochrome && isAlone;
    if (bitsPerComponent != 8 && bitsPerComponent != 16 && !isSmallGray)
        return false;
    if (colorComponents() == 0 || (colorComponents() == 4 && !isAlone))
        return false;
    if (bitsPerPixel != bitsPerComponent * (colorComponents() + (isAlone ? 0 : 1)))
        return false;
    if (byteOrder == CGImageByteOrder::little && bitsPerComponent != 16 && bitsPerPixel != 32)
        return false;
    return bytesPerRow >= (width * bitsPerPixel + 7) / 8 && bytesPerRow <= maximumBytes / height;
}

bool CGImageLayout::hasAlpha() const {
    return isPremultiplied() || alphaInfo == CGImageAlphaInfo::last
        || alphaInfo == CGImageAlphaInfo::first;
}

bool CGImageLayout::isPremultiplied() const {
    return alphaInfo == CGImageAlphaInfo::premultipliedLast
        || alphaInfo == CGImageAlphaInfo::premultipliedFirst;
}

std::array<int, 5> CGImageLayout::componentPlaces() const {
    const int colors = colorComponents();
    const int count = bitsPerPixel / bitsPerComponent;
    const bool isReversed = byteOrder == CGImageByteOrder::little && bitsPerComponent == 8;
    std::array<int, 5> places {};
    for (int component = 0; component < count; ++component) {
        int place = component;
        if (isFirst(alphaInfo))
            place = component == colors ? 0 : component + 1;
        places[static_cast<std::size_t>(component)] = isReversed ? count - 1 - place : place;
    }
    return places;
}

CGImage::CGImage(const CGImageLayout& layout, std::shared_ptr<const std::uint8_t[]> pixels)
    : m_layout(layout)
    , m_pixels(std::move(pixels)) { }

CGImageRef CGImage::create(
    const CGImageLayout& layout, std::shared_ptr<const std::uint8_t[]> pixels) {
    if (!pixels || !layout.isValid())
        return nullptr;
    return CGImageRef(new CGImage(layout, std::move(pixels)));
}

} // namespace kw
