// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The walk through a bitmap's pixels that changes their gamma.
#pragma once

#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/NSColor.h>

#include <array>
#include <cstdint>

namespace kw {

/// The channels of a pixel as they are read, each from 0 to 255.
struct Channels {
    std::uint8_t red, green, blue, alpha;
};

/// Finds channels by a pixel's index. Deliberate: the offsets are those of single precision, so
/// that far into a large bitmap they are rounded and another pixel's bytes are found.
class ChannelFinder {
public:
    explicit ChannelFinder(const CGImageLayout& layout)
        : m_bitsPerPixel(static_cast<float>(layout.bitsPerPixel))
        , m_byteCount(layout.byteCount()) {
        const int quarter = layout.bitsPerPixel / 4; // cut to whole bits
        m_quarter = static_cast<float>(quarter);
    }

    /// Where in the bitmap the bytes are: red, green, blue, alpha.
    std::array<std::int64_t, 4> positions(std::int32_t index) const {
        const float offset = static_cast<float>(index) * m_bitsPerPixel;
        const auto position = [](float bits) { return static_cast<std::int64_t>(bits) / 8; };
        return {position(offset), position(offset + m_quarter), position(offset + 2 * m_quarter),
            position(offset + 3 * m_quarter)};
    }

    Channels read(const std::uint8_t* bytes, std::int32_t index) const {
        const auto byteAt = [&](std::int64_t position) -> std::uint8_t {
            return position >= 0 && position < m_byteCount ? bytes[position] : 0;
        };
        const auto places = positions(index);
        return {byteAt(places[0]), byteAt(places[1]), byteAt(places[2]), byteAt(places[3])};
    }

private:
    float m_bitsPerPixel;
    float m_quarter = 0;
    std::int64_t m_byteCount;
};

/// What becomes of channels, by a table or to a power.
class GammaAdjustment {
public:
    GammaAdjustment(float value, const GammaTable* table)
        : m_value(static_cast<double>(value))
        , m_table(table) { }

    NSColor operator()(Channels channels) const;

private:
    double intensity(std::uint8_t channel, float scale) const;

    double m_value;
    const GammaTable* m_table;
};

/// By how many pixels an index grows from row to row.
std::int32_t pixelsPerRow(const CGImageLayout& layout);

/// Goes through columns, from the first to before the last, each from the top down.
void walkColumns(NSBitmapImageRep& bitmap, const GammaAdjustment& adjusted, std::int32_t first,
    std::int32_t last);

} // namespace kw
