// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/GammaWalk.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kw {

namespace {

/// Deliberate: what is cut to 32 bits, and what of these is kept, is 16 bits with a sign. A float
/// that is no 32-bit number has none of them set.
std::int16_t tableIndex(float value) {
    constexpr float limit = 2147483648.0F;
    if (!(value > -limit && value < limit))
        return 0;
    return static_cast<std::int16_t>(static_cast<std::int32_t>(value));
}

} // namespace

NSColor GammaAdjustment::operator()(Channels channels) const {
    const float scale = 255.0F / static_cast<float>(channels.alpha);
    return NSColor::colorWithCalibratedRed(intensity(channels.red, scale),
        intensity(channels.green, scale), intensity(channels.blue, scale),
        static_cast<double>(channels.alpha) / 255);
}

double GammaAdjustment::intensity(std::uint8_t channel, float scale) const {
    const float color = static_cast<float>(channel) * scale;
    if (!m_table)
        return std::pow(static_cast<double>(color / 255.0F), m_value);
    const int index = std::clamp<int>(tableIndex(color), 0, 255);
    return static_cast<double>(
        static_cast<float>((*m_table)[static_cast<std::size_t>(index)]) * 3.0517578125e-05F);
}

std::int32_t pixelsPerRow(const CGImageLayout& layout) {
    return static_cast<std::int32_t>(layout.bytesPerRow / (layout.bitsPerPixel / 8));
}

void walkColumns(NSBitmapImageRep& bitmap, const GammaAdjustment& adjusted, std::int32_t first,
    std::int32_t last) {
    const CGImageLayout& layout = bitmap.layout();
    const ChannelFinder channels(layout);
    const auto step = static_cast<std::uint32_t>(pixelsPerRow(layout));
    const auto height = static_cast<float>(layout.height);
    for (std::int32_t x = first; x < last; ++x) {
        auto index = static_cast<std::uint32_t>(x);
        for (std::int32_t y = 0; static_cast<float>(y) < height; ++y, index += step)
            bitmap.setColor(
                adjusted(channels.read(bitmap.bitmapData(), static_cast<std::int32_t>(index))), x,
                y);
    }
}

} // namespace kw
