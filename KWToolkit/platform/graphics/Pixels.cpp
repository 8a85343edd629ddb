// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace kw {

namespace {

using Places = std::array<int, 5>;

/// What one pixel of an image holds, colors first, then alpha, which is the maximum where the image
/// has none.
std::array<std::uint32_t, 5> componentsAt(
    const CGImageLayout& layout, const Places& places, const std::uint8_t* row, std::int64_t x) {
    std::array<std::uint32_t, 5> components {};
    const auto colors = static_cast<std::size_t>(layout.colorComponents());
    for (std::size_t i = 0; i < colors; ++i)
        components[i] = componentAt(layout, row, x, places[i]);
    components[4] = layout.hasAlpha() ? componentAt(layout, row, x, places[colors])
                                      : maximumComponent(layout.bitsPerComponent);
    return components;
}

// Gray and RGB of 8 bits, where the compiler knows whether colors are to be multiplied.
template <bool multiplies>
void read8(const CGImageLayout& layout, const Places& places, const std::uint8_t* pixel,
    std::int64_t count, std::uint8_t* rgba) {
    const bool isGray = layout.colorComponents() == 1;
    const int step = layout.bitsPerPixel / 8;
    const int red = places[0];
    const int green = isGray ? red : places[1];
    const int blue = isGray ? red : places[2];
    const int alpha = places[static_cast<std::size_t>(layout.colorComponents())];
    const bool hasAlpha = layout.hasAlpha();
    for (; count > 0; --count, pixel += step, rgba += 4) {
        const std::uint8_t opacity = hasAlpha ? pixel[alpha] : 0xFF;
        const auto stored = [opacity](std::uint8_t color) {
            return multiplies ? multiplied(color, opacity) : color;
        };
        rgba[0] = stored(pixel[red]);
        rgba[1] = stored(pixel[green]);
        rgba[2] = stored(pixel[blue]);
        rgba[3] = opacity;
    }
}

// The same for words that end in alpha, or in a byte that is none, and are not multiplied.
template <bool swapsRedAndBlue>
void readWords(
    const std::uint8_t* pixel, std::int64_t count, std::uint32_t opacity, std::uint8_t* rgba) {
    for (std::int64_t i = 0; i < 4 * count; i += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, pixel + i, sizeof word);
        if (swapsRedAndBlue)
            word = (word & 0xFF00FF00) | (word >> 16 & 0xFF) | (word & 0xFF) << 16;
        word |= opacity;
        std::memcpy(rgba + i, &word, sizeof word);
    }
}

void readAnything(const CGImageLayout& layout, const Places& places, const std::uint8_t* row,
    std::int64_t first, std::int64_t count, std::uint8_t* rgba) {
    const bool multiplies = layout.hasAlpha() && !layout.isPremultiplied();
    const std::uint64_t maximum = maximumComponent(layout.bitsPerComponent);
    for (std::int64_t x = first; x < first + count; ++x, rgba += 4) {
        auto components = componentsAt(layout, places, row, x);
        const std::uint64_t alpha = components[4];
        if (layout.colorComponents() == 1) {
            components[1] = components[2] = components[0];
        } else if (layout.colorComponents() == 4) {
            for (std::size_t i = 0; i < 3; ++i)
                components[i] = static_cast<std::uint32_t>(
                    maximum - std::min<std::uint64_t>(maximum, components[i] + components[3]));
        }
        const std::uint64_t opacity = multiplies ? alpha : maximum;
        const std::uint64_t divisor = maximum * maximum;
        for (std::size_t i = 0; i < 3; ++i)
            rgba[i] =
                static_cast<std::uint8_t>((components[i] * opacity * 255 + divisor / 2) / divisor);
        rgba[3] = static_cast<std::uint8_t>((alpha * 255 + maximum / 2) / maximum);
    }
}

std::shared_ptr<std::uint8_t[]> owned(void* memory) {
    auto* const pixels = static_cast<std::uint8_t*>(memory);
    return pixels ? std::shared_ptr<std::uint8_t[]>(pixels, &std::free) : nullptr;
}

} // namespace

std::shared_ptr<std::uint8_t[]> makePixels(std::int64_t byteCount) {
    // The system's own zero pages: nothing is touched that is not drawn on.
    return owned(std::calloc(static_cast<std::size_t>(byteCount), 1));
}

std::shared_ptr<std::uint8_t[]> makeUnsetPixels(std::int64_t byteCount) {
    return owned(std::malloc(static_cast<std::size_t>(byteCount)));
}

std::uint32_t componentAt(
    const CGImageLayout& layout, const std::uint8_t* row, std::int64_t x, int place) {
    const int bits = layout.bitsPerComponent;
    const std::int64_t bit = x * layout.bitsPerPixel + std::int64_t {place} * bits;
    const std::uint8_t* const byte = row + bit / 8;
    if (bits == 16) {
        const bool isLittle = layout.byteOrder == CGImageByteOrder::little;
        return static_cast<std::uint32_t>(byte[isLittle ? 1 : 0] << 8 | byte[isLittle ? 0 : 1]);
    }
    return *byte >> (8 - bits - bit % 8) & maximumComponent(bits);
}

void setComponentAt(const CGImageLayout& layout, std::uint8_t* row, std::int64_t x, int place,
    std::uint32_t value) {
    const int bits = layout.bitsPerComponent;
    if (bits == 8) {
        row[x * (layout.bitsPerPixel / 8) + place] = static_cast<std::uint8_t>(value);
        return;
    }
    const std::int64_t bit = x * layout.bitsPerPixel + std::int64_t {place} * bits;
    std::uint8_t* const byte = row + bit / 8;
    if (bits == 16) {
        const bool isLittle = layout.byteOrder == CGImageByteOrder::little;
        byte[isLittle ? 1 : 0] = static_cast<std::uint8_t>(value >> 8);
        byte[isLittle ? 0 : 1] = static_cast<std::uint8_t>(value);
        return;
    }
    const auto shift = static_cast<int>(8 - bits - bit % 8);
    *byte =
        static_cast<std::uint8_t>((*byte & ~(maximumComponent(bits) << shift)) | value << shift);
}

void readPremultipliedRGBA(const CGImageLayout& layout, const std::uint8_t* row, std::int64_t first,
    std::int64_t count, std::uint8_t* rgba) {
    const Places places = layout.componentPlaces();
    if (layout.bitsPerComponent != 8 || layout.colorComponents() == 4) {
        readAnything(layout, places, row, first, count, rgba);
        return;
    }
    const std::uint8_t* const pixel = row + first * layout.bitsPerPixel / 8;
    const bool isWord =
        layout.bitsPerPixel == 32 && places[3] == 3 && std::endian::native == std::endian::little;
    if (layout.hasAlpha() && !layout.isPremultiplied())
        read8<true>(layout, places, pixel, count, rgba);
    else if (!isWord)
        read8<false>(layout, places, pixel, count, rgba);
    else if (places[0] == 0)
        readWords<false>(pixel, count, layout.hasAlpha() ? 0 : 0xFF000000, rgba);
    else
        readWords<true>(pixel, count, layout.hasAlpha() ? 0 : 0xFF000000, rgba);
}

} // namespace kw
