// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGColorSpace.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kw {

/// Where a pixel's alpha is, and whether its colors are multiplied with it.
enum class CGImageAlphaInfo {
    none, ///< opaque, without a component for alpha
    premultipliedLast, ///< RGBA
    premultipliedFirst, ///< ARGB
    last, ///< RGBA, colors as they are
    first, ///< ARGB, colors as they are
    noneSkipLast, ///< RGBX: opaque, the last component is not looked at
    noneSkipFirst, ///< XRGB
};

enum class CGImageByteOrder {
    big, ///< components in the order of the alpha info's name, each from its high byte on
    /// With 8 bits a component, the four bytes of each pixel in reverse: premultiplied first is
    /// BGRA. With 16, each component from its low byte on.
    little,
};

/// How pixels lie in memory. Rows go from the top of the picture down.
struct KW_EXPORT CGImageLayout {
    std::int64_t width = 0; ///< in pixels
    std::int64_t height = 0;
    int bitsPerComponent = 8; ///< 8 or 16; for gray without alpha also 1, 2 or 4
    int bitsPerPixel = 32;
    std::int64_t bytesPerRow = 0;
    CGColorSpace colorSpace = CGColorSpace::deviceRGB;
    CGImageAlphaInfo alphaInfo = CGImageAlphaInfo::premultipliedLast;
    CGImageByteOrder byteOrder = CGImageByteOrder::big;

    /// RGBA with 8 bits each, premultiplied, rows without padding: what drawing makes.
    static CGImageLayout premultipliedRGBA(std::int64_t width, std::int64_t height);

    /// Whether pixels can lie like that: sides of 1 to 2^31 - 1, a depth from the list above, bits
    /// a pixel that just hold the components, rows that hold the pixels, 2^40 bytes in all at most.
    bool isValid() const;
    std::int64_t byteCount() const { return bytesPerRow * height; }

    bool hasAlpha() const;
    bool isPremultiplied() const;
    /// The components of a pixel's color, without alpha.
    int colorComponents() const { return CGColorSpaceGetNumberOfComponents(colorSpace); }
    /// Where in a pixel the components lie, colors first, then alpha (or what stands in its place),
    /// in units of a component.
    std::array<int, 5> componentPlaces() const;

    friend bool operator==(const CGImageLayout&, const CGImageLayout&) = default;
};

/// Pixels that never change, so any number of threads may read them.
class KW_EXPORT CGImage {
public:
    /// Takes pixels over: as many bytes as the layout says, that nobody changes any more. Null
    /// where there are none or the layout is not valid.
    static std::shared_ptr<const CGImage> create(
        const CGImageLayout& layout, std::shared_ptr<const std::uint8_t[]> pixels);

    const CGImageLayout& layout() const { return m_layout; }
    std::int64_t width() const { return m_layout.width; }
    std::int64_t height() const { return m_layout.height; }
    int bitsPerComponent() const { return m_layout.bitsPerComponent; }
    int bitsPerPixel() const { return m_layout.bitsPerPixel; }
    std::int64_t bytesPerRow() const { return m_layout.bytesPerRow; }
    CGColorSpace colorSpace() const { return m_layout.colorSpace; }
    CGImageAlphaInfo alphaInfo() const { return m_layout.alphaInfo; }

    /// The first byte of a row; rows count from the top.
    const std::uint8_t* row(std::int64_t y) const {
        return m_pixels.get() + y * m_layout.bytesPerRow;
    }
    const std::shared_ptr<const std::uint8_t[]>& pixels() const { return m_pixels; }

private:
    CGImage(const CGImageLayout& layout, std::shared_ptr<const std::uint8_t[]> pixels);

    CGImageLayout m_layout;
    std::shared_ptr<const std::uint8_t[]> m_pixels;
};

using CGImageRef = std::shared_ptr<const CGImage>;

} // namespace kw
