// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>

#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/graphics/NSColor.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>

namespace kw {

namespace {

/// The channels of a pixel as they are read, each from 0 to 255.
struct Channels {
    std::uint8_t red, green, blue, alpha;
};

/// Reads channels by a pixel's index. Deliberate: the offsets are those of single precision, so
/// that far into a large bitmap they are rounded and another pixel's bytes are read.
class ChannelReader {
public:
    explicit ChannelReader(const CGImageLayout& layout)
        : m_bitsPerPixel(static_cast<float>(layout.bitsPerPixel))
        , m_quarter(static_cast<float>(layout.bitsPerPixel / 4))
        , m_byteCount(layout.byteCount()) { }

    Channels operator()(const std::uint8_t* bytes, std::int32_t index) const {
        const float offset = static_cast<float>(index) * m_bitsPerPixel;
        const auto byteAt = [&](float bits) -> std::uint8_t {
            const std::int64_t position = static_cast<std::int64_t>(bits) / 8;
            return position >= 0 && position < m_byteCount ? bytes[position] : 0;
        };
        return {byteAt(offset), byteAt(offset + m_quarter), byteAt(offset + 2 * m_quarter),
            byteAt(offset + 3 * m_quarter)};
    }

private:
    float m_bitsPerPixel;
    float m_quarter;
    std::int64_t m_byteCount;
};

/// Deliberate: what is cut to 32 bits, and what of these is kept, is 16 bits with a sign. A float
/// that is no 32-bit number has none of them set.
std::int16_t tableIndex(float value) {
    constexpr float limit = 2147483648.0F;
    if (!(value > -limit && value < limit))
        return 0;
    return static_cast<std::int16_t>(static_cast<std::int32_t>(value));
}

class Adjustment {
public:
    Adjustment(float value, const GammaTable* table)
        : m_value(static_cast<double>(value))
        , m_table(table) { }

    NSColor operator()(Channels channels) const {
        const float scale = 255.0F / static_cast<float>(channels.alpha);
        return NSColor::colorWithCalibratedRed(intensity(channels.red, scale),
            intensity(channels.green, scale), intensity(channels.blue, scale),
            static_cast<double>(channels.alpha) / 255);
    }

private:
    double intensity(std::uint8_t channel, float scale) const {
        const float color = static_cast<float>(channel) * scale;
        if (!m_table)
            return std::pow(static_cast<double>(color / 255.0F), m_value);
        const int index = std::clamp<int>(tableIndex(color), 0, 255);
        return static_cast<double>(
            static_cast<float>((*m_table)[static_cast<std::size_t>(index)]) * 3.0517578125e-05F);
    }

    double m_value;
    const GammaTable* m_table;
};

bool hasRedComponent(const NSBitmapImageRep& bitmap) {
    try {
        if (const auto color = bitmap.colorAt(0, 0))
            color->redComponent();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

void adjustGammaWithValue(NSBitmapImageRep& bitmap, float value, const GammaTable* table) {
    if (!hasRedComponent(bitmap) || (value == 0.0F && !table))
        return;
    const CGImageLayout& layout = bitmap.layout();
    const auto rowPixels =
        static_cast<std::int32_t>(layout.bytesPerRow / (layout.bitsPerPixel / 8));
    const ChannelReader read(layout);
    const Adjustment adjusted(value, table);
    for (std::int32_t x = 0; static_cast<float>(x) < static_cast<float>(layout.width); ++x) {
        auto index = static_cast<std::uint32_t>(x);
        for (std::int32_t y = 0; static_cast<float>(y) < static_cast<float>(layout.height); ++y) {
            bitmap.setColor(
                adjusted(read(bitmap.bitmapData(), static_cast<std::int32_t>(index))), x, y);
            index += static_cast<std::uint32_t>(rowPixels);
        }
    }
}

void adjustGammaWithValue(NSBitmapImageRep& bitmap, float value) {
    adjustGammaWithValue(bitmap, value, nullptr);
}

void adjustGammaWithArray(NSBitmapImageRep& bitmap, const GammaTable* table) {
    adjustGammaWithValue(bitmap, 0, table);
}

namespace {

[[maybe_unused]] const bool isListed =
    (NSBitmapImageRep::classObject().addMethods({
         method("adjustGammaWithValue:",
             [](NSBitmapImageRep& bitmap, float value) { adjustGammaWithValue(bitmap, value); }),
         method("adjustGammaWithArray:",
             [](NSBitmapImageRep& bitmap, const GammaTable* table) {
                 adjustGammaWithArray(bitmap, table);
             }),
     }),
        true);

} // namespace

} // namespace kw
