// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/GammaTableWalk.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace kw {

namespace {

/// A pixel's bytes depend on nothing but the channels that were read, so what the walk would store
/// for each pair of color and alpha is found out once. And the order of pixels matters to none but
/// those that read another pixel's bytes. In a row of its own these are found before it, changed,
/// or behind it, unchanged, in either order. So only columns so close to an edge that they reach
/// into the next row are left to the walk.
class TableWalk {
public:
    TableWalk(NSBitmapImageRep& bitmap, const GammaAdjustment& adjusted)
        : m_layout(bitmap.layout())
        , m_places(m_layout.componentPlaces())
        , m_adjusted(adjusted)
        , m_channels(m_layout)
        , m_bitmap(bitmap) {
        CGImageLayout one = m_layout;
        one.width = one.height = 1;
        one.bytesPerRow = one.bitsPerPixel / 8;
        m_one = NSBitmapImageRep::initWithLayout(one);
        if (!m_one)
            throw std::bad_alloc();
    }

    static bool isWorthwhile(const CGImageLayout& layout) {
        constexpr std::int64_t least = 4096; // pixels
        constexpr std::int64_t longest = std::int64_t {1} << 24; // as the walk counts
        return layout.bitsPerComponent == 8 && layout.width * layout.height >= least
            && layout.width / 2 > reach(layout) && layout.width <= longest
            && layout.height <= longest
            && layout.bytesPerRow * 8 / layout.bitsPerPixel * layout.height <= largestIndex
            && layout.bytesPerRow % (layout.bitsPerPixel / 8) == 0;
    }

    void run() {
        const auto width = static_cast<std::int32_t>(m_layout.width);
        const std::int32_t edge = reach(m_layout);
        walkColumns(m_bitmap, m_adjusted, 0, edge);
        m_bytes = m_bitmap.bitmapData();
        for (std::int64_t y = 0; y < m_layout.height; ++y) {
            const auto row = static_cast<std::int32_t>(y * pixelsPerRow(m_layout));
            walkRow(row + edge, row + width - edge);
        }
        walkColumns(m_bitmap, m_adjusted, width - edge, width);
    }

private:
    /// Where a pixel's channels are found, counted from its own first byte.
    using Offsets = std::array<std::int32_t, 4>;

    static constexpr std::int64_t largestIndex = std::int64_t {1} << 28;

    /// The precision of a number in single precision.
    static std::int64_t spacing(std::int64_t number) {
        constexpr int precision = std::numeric_limits<float>::digits;
        const auto bits = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(number)));
        return bits > precision ? std::int64_t {1} << (bits - precision) : 1;
    }

    /// How many pixels off a pixel's channels may be.
    static std::int32_t reach(const CGImageLayout& layout) {
        const std::int64_t rounding = spacing(layout.byteCount() * 8);
        return rounding < 4 ? 0 : static_cast<std::int32_t>(2 + 2 * rounding / layout.bitsPerPixel);
    }

    /// What each color becomes with an alpha. An alpha itself stays what it is.
    const std::uint8_t* tableFor(std::uint8_t alpha) {
        if (!m_isKnown[alpha]) [[unlikely]]
            fillTable(alpha);
        return &m_tables[std::size_t {alpha} << 8];
    }

    [[gnu::noinline]] void fillTable(std::uint8_t alpha) {
        // Three colors a pixel.
        const auto byte = [](int color) { return static_cast<std::uint8_t>(std::min(color, 255)); };
        for (int color = 0; color < 256; color += 3) {
            m_one->setColor(
                m_adjusted({byte(color), byte(color + 1), byte(color + 2), alpha}), 0, 0);
            for (int channel = 0; channel < 3; ++channel)
                m_tables[std::size_t {alpha} << 8 | byte(color + channel)] =
                    m_one->bitmapData()[m_places[static_cast<std::size_t>(channel)]];
        }
        m_isKnown[alpha] = true;
    }

    void fillTables() {
        if (std::exchange(m_areAllKnown, true))
            return;
        for (int alpha = 0; alpha < 256; ++alpha)
            tableFor(static_cast<std::uint8_t>(alpha));
    }

    /// Goes through a part of a row, by stretches in which the offsets repeat.
    void walkRow(std::int32_t index, std::int32_t end) {
        const std::int64_t bits = m_layout.bitsPerPixel;
        const std::int64_t lastQuarter = 3 * (bits / 4);
        while (index < end) {
            // Between powers of two numbers are equally far apart. What is added to an even number
            // of these distances is rounded alike.
            const auto firstBit = static_cast<std::uint64_t>(index * bits);
            const auto lastBit = firstBit + static_cast<std::uint64_t>(lastQuarter);
            std::int64_t stretchEnd = index + 1;
            if (std::bit_width(firstBit) == std::bit_width(lastBit)) {
                const auto next = static_cast<std::int64_t>(std::bit_ceil(lastBit + 1));
                stretchEnd = std::min({std::int64_t {end}, (next - lastQuarter + bits - 1) / bits,
                    static_cast<std::int64_t>(
                        std::bit_ceil(static_cast<std::uint32_t>(index) + 1))});
            }
            const std::int64_t powerOfTwo = bits & -bits; // in the bits of a pixel
            const std::int64_t rounding = spacing(static_cast<std::int64_t>(lastBit));
            const std::int64_t period = std::max<std::int64_t>(1, 2 * rounding / powerOfTwo);
            m_offsets.clear();
            for (std::int64_t i = index; i < std::min(index + period, stretchEnd); ++i) {
                const auto positions = m_channels.positions(static_cast<std::int32_t>(i));
                Offsets& offsets = m_offsets.emplace_back();
                for (std::size_t channel = 0; channel < 4; ++channel)
                    offsets[channel] =
                        static_cast<std::int32_t>(positions[channel] - i * (bits / 8));
            }
            walkStretch(index, static_cast<std::int32_t>(stretchEnd));
            index = static_cast<std::int32_t>(stretchEnd);
        }
    }

    void walkStretch(std::int32_t begin, std::int32_t end) {
        const std::int64_t size = m_layout.bitsPerPixel / 8;
        std::uint8_t* pixel = m_bytes + begin * size;
        const std::int32_t done = walkWords(pixel, end - begin);
        pixel += done * size;
        auto phase = static_cast<std::size_t>(done) % m_offsets.size();
        for (std::int32_t i = begin + done; i < end; ++i, pixel += size) {
            change(pixel, m_offsets[phase]);
            if (++phase == m_offsets.size())
                phase = 0;
        }
    }

    /// A format whose pixels are words that end in alpha, or in a byte that is none.
    struct WordFormat {
        bool swapsRedAndBlue;
        bool hasAlpha;
    };

    /// Goes through pixels that the compiler knows all about, and returns how many.
    std::int32_t walkWords(std::uint8_t* pixels, std::int32_t count) {
        const bool isWord = m_layout.bitsPerPixel == 32 && m_places[3] == 3;
        if (!isWord || m_offsets.size() > 4 || std::endian::native != std::endian::little)
            return 0;
        if (m_layout.hasAlpha())
            return m_places[0] == 0 ? walkPattern<WordFormat {false, true}>(pixels, count)
                                    : walkPattern<WordFormat {true, true}>(pixels, count);
        return m_places[0] == 0 ? walkPattern<WordFormat {false, false}>(pixels, count)
                                : walkPattern<WordFormat {true, false}>(pixels, count);
    }

    /// The offsets of four neighbours in pixels of 32 bits, up to index 2^25.
    static constexpr std::array<std::array<Offsets, 4>, 4> patterns {{
        {{{0, 1, 2, 3}, {0, 1, 2, 3}, {0, 1, 2, 3}, {0, 1, 2, 3}}},
        {{{0, 0, 2, 4}, {0, 0, 2, 4}, {0, 0, 2, 4}, {0, 0, 2, 4}}},
        {{{0, 0, 0, 4}, {0, 0, 4, 4}, {0, 0, 0, 4}, {0, 0, 4, 4}}},
        {{{0, 0, 0, 0}, {-4, -4, -4, -4}, {0, 0, 0, 0}, {4, 4, 4, 4}}},
    }};

    template <WordFormat format, std::size_t which = 0>
    std::int32_t walkPattern(std::uint8_t* pixels, std::int32_t count) {
        constexpr const std::array<Offsets, 4>& pattern = patterns[which];
        for (std::size_t first = 0; first < 4; ++first) { // of the four that comes first
            bool isThis = true;
            for (std::size_t i = 0; i < 4; ++i)
                isThis = isThis && m_offsets[i % m_offsets.size()] == pattern[(first + i) % 4];
            if (!isThis)
                continue;
            constexpr bool isFilled = which > 0;
            if constexpr (isFilled)
                fillTables();
            std::int32_t done = 0;
            for (; done < count && first % 4 != 0; ++done, ++first, pixels += 4)
                changeWord<format, isFilled>(pixels, pattern[first]);
            for (; done + 4 <= count; done += 4, pixels += 16) {
                changeWord<format, isFilled>(pixels, pattern[0]);
                changeWord<format, isFilled>(pixels + 4, pattern[1]);
                changeWord<format, isFilled>(pixels + 8, pattern[2]);
                changeWord<format, isFilled>(pixels + 12, pattern[3]);
            }
            return done;
        }
        if constexpr (which + 1 < patterns.size())
            return walkPattern<format, which + 1>(pixels, count);
        return 0;
    }

    template <WordFormat format, bool isFilled>
    [[gnu::always_inline]] inline void changeWord(std::uint8_t* pixel, const Offsets& own) {
        const std::uint8_t alpha = pixel[own[3]];
        const std::uint8_t* const table =
            isFilled ? &m_tables[std::size_t {alpha} << 8] : tableFor(alpha);
        const std::uint32_t red = table[pixel[own[0]]];
        const std::uint32_t green = table[pixel[own[1]]];
        const std::uint32_t blue = table[pixel[own[2]]];
        const std::uint32_t last = format.hasAlpha ? alpha : pixel[3];
        const std::uint32_t word = (format.swapsRedAndBlue ? blue : red) | green << 8
            | (format.swapsRedAndBlue ? red : blue) << 16 | last << 24;
        std::memcpy(pixel, &word, sizeof word);
    }

    void change(std::uint8_t* pixel, const Offsets& own) {
        const std::uint8_t alpha = pixel[own[3]];
        const std::uint8_t* const table = tableFor(alpha);
        const std::uint8_t colors[] {
            table[pixel[own[0]]], table[pixel[own[1]]], table[pixel[own[2]]]};
        for (std::size_t i = 0; i < 3; ++i)
            pixel[m_places[i]] = colors[i];
        if (m_layout.hasAlpha())
            pixel[m_places[3]] = alpha;
    }

    CGImageLayout m_layout;
    std::array<int, 5> m_places;
    const GammaAdjustment& m_adjusted;
    ChannelFinder m_channels;
    NSBitmapImageRep& m_bitmap;
    std::shared_ptr<NSBitmapImageRep> m_one; // to see what is stored
    std::uint8_t* m_bytes = nullptr;
    std::array<std::uint8_t, 0x10000> m_tables {}; // by alpha, then by color
    std::array<bool, 256> m_isKnown {}; // by alpha
    bool m_areAllKnown = false;
    std::vector<Offsets> m_offsets;
};

} // namespace

bool walkByTables(NSBitmapImageRep& bitmap, const GammaAdjustment& adjusted) {
    if (!TableWalk::isWorthwhile(bitmap.layout()))
        return false;
    std::make_unique<TableWalk>(bitmap, adjusted)->run(); // large
    return true;
}

} // namespace kw
