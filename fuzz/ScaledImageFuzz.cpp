// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever image and arguments: there is a premultiplied image of the size that the rules say, or
// none where they say so.
#include <KWToolkit/imaging/KWScaledImage.h>
#include <fuzz/Require.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

namespace {

using namespace kw;
using kw::fuzz::require;

/// Values from the input, 0 where it has ended.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size) { }

    template <class Value>
    Value take() {
        Value value {};
        const std::size_t count = std::min(sizeof value, m_size);
        std::memcpy(&value, m_data, count);
        m_data += count;
        m_size -= count;
        return value;
    }
    int upTo(int last) { return take<std::uint8_t>() % (last + 1); }
    bool flag() { return upTo(1) == 1; }

    /// Mostly a side that is drawn in no time, else any.
    std::int64_t side(int usual) {
        switch (upTo(7)) {
        case 0:
            return take<std::int64_t>();
        case 1:
            return take<std::int32_t>();
        case 2:
            return take<std::int8_t>();
        default:
            return 1 + take<std::uint16_t>() % usual;
        }
    }

    void fill(std::uint8_t* bytes, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            bytes[i] = m_size > 0 ? m_data[i % m_size] : 0;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};

constexpr std::int64_t mostPixels = 1 << 16;

CGImageLayout layoutFrom(Input& input) {
    constexpr int depths[] {8, 8, 8, 16, 1, 2, 4, 0, 32, -8};
    CGImageLayout layout;
    layout.width = input.side(200);
    layout.height = input.side(200);
    layout.bitsPerComponent = depths[input.upTo(std::size(depths) - 1)];
    layout.colorSpace = static_cast<CGColorSpace>(input.upTo(5));
    layout.alphaInfo = static_cast<CGImageAlphaInfo>(input.upTo(6));
    layout.byteOrder = input.flag() ? CGImageByteOrder::little : CGImageByteOrder::big;
    const int extra = layout.alphaInfo == CGImageAlphaInfo::none ? 0 : 1;
    const bool isUsual = input.upTo(7) != 0;
    layout.bitsPerPixel = isUsual ? layout.bitsPerComponent * (layout.colorComponents() + extra)
                                  : input.take<std::int16_t>();
    if (isUsual && layout.width > 0 && layout.width <= mostPixels)
        layout.bytesPerRow = (layout.width * layout.bitsPerPixel + 7) / 8 + input.upTo(9);
    else
        layout.bytesPerRow = input.take<std::int64_t>();
    return layout;
}

/// Pixels in memory that is just as large as it must be.
CGImageRef imageFrom(Input& input) {
    const CGImageLayout layout = layoutFrom(input);
    if (layout.isValid() && layout.byteCount() > 64 * mostPixels)
        return nullptr;
    const auto byteCount =
        layout.isValid() ? static_cast<std::size_t>(layout.byteCount()) : std::size_t {1};
    const std::shared_ptr<std::uint8_t[]> pixels(new std::uint8_t[byteCount]);
    input.fill(pixels.get(), byteCount);
    CGImageRef image = CGImage::create(layout, pixels);
    require(static_cast<bool>(image) == layout.isValid());
    return image;
}

double alphaFrom(Input& input) {
    constexpr double special[] {1, 0, 0.5, -1, 2, 1e300, -0.0,
        std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity()};
    const int which = input.upTo(std::size(special));
    return which < static_cast<int>(std::size(special)) ? special[which] : input.take<double>();
}

/// Each channel of no pixel is above its alpha.
bool isPremultiplied(const CGImage& image) {
    for (std::int64_t y = 0; y < image.height(); ++y) {
        const std::uint8_t* pixel = image.row(y);
        for (std::int64_t x = 0; x < image.width(); ++x, pixel += 4) {
            if (std::max({pixel[0], pixel[1], pixel[2]}) > pixel[3])
                return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const CGImageRef image = imageFrom(input);
    const std::int64_t width = input.side(300);
    const std::int64_t height = input.side(300);
    const bool preserveRatio = input.flag();
    const bool shouldAntialias = input.flag();
    const bool keepSquareRect = input.flag();
    const double alpha = alphaFrom(input);
    const auto quality = input.flag() ? input.upTo(5) : input.take<std::int32_t>();

    // The sides by the rules. A product must be a 64-bit number.
    __int128 drawnWidth = width;
    __int128 drawnHeight = height;
    bool hasSides = true;
    if (image && preserveRatio) {
        const bool isLandscape = image->width() > image->height();
        const __int128 product =
            isLandscape ? __int128 {image->height()} * width : __int128 {image->width()} * height;
        hasSides = product == static_cast<std::int64_t>(product);
        (isLandscape ? drawnHeight : drawnWidth) =
            product / std::max(image->width(), image->height());
    }
    const __int128 canvasWidth = keepSquareRect ? width : drawnWidth;
    const __int128 canvasHeight = keepSquareRect ? height : drawnHeight;
    const bool hasCanvas = hasSides && canvasWidth > 0 && canvasHeight > 0;
    const bool isSmall = hasCanvas && canvasHeight <= mostPixels / canvasWidth;
    // What is drawn would take long, though there is memory for it.
    if (image && hasCanvas && !isSmall && canvasHeight <= (std::int64_t {1} << 30) / canvasWidth)
        return 0;

    const CGImageRef scaled = kwCreateScaledCGImageFromCGImage(
        image, width, height, preserveRatio, shouldAntialias, keepSquareRect, alpha, quality);
    require(static_cast<bool>(scaled) == (image && image->bitsPerComponent() == 8 && isSmall));
    if (!scaled)
        return 0;
    require(scaled->layout()
        == CGImageLayout::premultipliedRGBA(
            static_cast<std::int64_t>(canvasWidth), static_cast<std::int64_t>(canvasHeight)));
    require(isPremultiplied(*scaled));
    return 0;
}
