// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/Resampling.h>

#include <KWToolkit/imaging/ResamplingLoops.h>
#include <KWToolkit/imaging/ResamplingWeights.h>
#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <vector>

namespace kw {

namespace {

/// Gives an image's rows as pixels of four bytes, alpha last and premultiplied.
class SourceRows {
public:
    SourceRows(const CGImage& image, std::int64_t first, std::int64_t count)
        : m_image(image)
        , m_first(first)
        , m_count(count) {
        const CGImageLayout& layout = image.layout();
        const auto places = layout.componentPlaces();
        const bool isRGB = CGColorSpaceGetModel(layout.colorSpace) == CGColorSpaceModel::RGB;
        m_isFourBytes = isRGB && layout.bitsPerPixel == 32 && places[3] == 3;
        m_finish = {
            .swapsRedAndBlue = m_isFourBytes && places[0] == 2, .isOpaque = !layout.hasAlpha()};
        m_isStraight = layout.hasAlpha() && !layout.isPremultiplied();
    }

    RowFinish finish() const { return m_finish; }

    /// Valid until as many more calls as rows are added at once. May be read `rowSlack` pixels
    /// beyond its end.
    const std::uint8_t* at(std::int64_t y) {
        const CGImageLayout& layout = m_image.layout();
        const std::uint8_t* const row = m_image.row(y);
        if (!m_isFourBytes) {
            std::uint8_t* const own = copy();
            readPremultipliedRGBA(layout, row, m_first, m_count, own);
            return own;
        }
        const std::uint8_t* const pixels = row + 4 * m_first;
        if (m_isStraight) {
            std::uint8_t* const own = copy();
            resamplingLoops().premultiply(pixels, m_count, own);
            return own;
        }
        const std::uint8_t* const end = m_image.row(0) + layout.byteCount();
        if (end - pixels >= 4 * (m_count + rowSlack))
            return pixels;
        std::uint8_t* const own = copy();
        std::memcpy(own, pixels, static_cast<std::size_t>(4 * m_count));
        return own;
    }

private:
    std::uint8_t* copy() {
        const auto size = static_cast<std::size_t>(4 * (m_count + rowSlack));
        m_copies.resize(rowsAtOnce * size);
        return m_copies.data() + size * (m_copied++ % rowsAtOnce);
    }

    const CGImage& m_image;
    std::int64_t m_first;
    std::int64_t m_count;
    bool m_isFourBytes;
    bool m_isStraight;
    RowFinish m_finish {};
    std::vector<std::uint8_t> m_copies;
    std::size_t m_copied = 0;
};

/// Rows of one length in a ring.
template <class Component>
class Rows {
public:
    Rows(std::size_t count, std::int64_t pixels)
        : m_count(count)
        , m_size(static_cast<std::size_t>(4 * (pixels + rowSlack)))
        , m_components(count * m_size) { }

    Component* at(std::size_t number) { return m_components.data() + number % m_count * m_size; }

private:
    std::size_t m_count;
    std::size_t m_size;
    AlignedVector<Component> m_components;
};

// One image's drawing. `store` is called with each part of a row of the result: its pixels, the
// row's number, and where in the row the part begins and how long it is.

/// A part of so many pixels of the rows that are added fits the nearest cache.
constexpr std::int64_t stripWidth = 256;

/// How many rows of the result may be needed at a time, as rows of the source are added in steps.
struct RowCounts {
    explicit RowCounts(const std::vector<ResamplingWeights::Taps>& taps) {
        constexpr auto step = static_cast<std::int64_t>(rowsAtOnce);
        const auto endOf = [&](std::size_t i) { return taps[i].first + taps[i].count; };
        std::size_t begun = 0;
        std::size_t ended = 0;
        for (std::size_t i = 0; i < taps.size(); ++i) {
            while (begun < taps.size() && taps[begun].first < endOf(i) + step)
                ++begun;
            while (ended < taps.size() && endOf(ended) <= endOf(i) + step)
                ++ended;
            underWay = std::max(underWay, begun - i);
            done = std::max(done, ended - i);
        }
    }

    std::size_t underWay = 1;
    std::size_t done = 1;
};

/// For a height that shrinks by much. Rows of the source are added, a few at a time, to all rows of
/// the result that they belong to; what is done of these is then scaled in width.
template <class Store>
void drawDownFirst(SourceRows& source, const ResamplingWeights& across,
    const ResamplingWeights& down, const Store& store) {
    const ResamplingLoops& loops = resamplingLoops();
    const auto arranged = loops.arranged(across);
    const std::int64_t sourcePixels = across.endSource() - across.firstSource();
    const auto pixels = static_cast<std::int64_t>(across.taps().size());
    const auto& taps = down.taps();
    constexpr auto step = static_cast<std::int64_t>(rowsAtOnce);

    const RowCounts most(taps);
    Rows<std::int32_t> sums(most.underWay, sourcePixels);
    Rows<std::int16_t> results(most.done, sourcePixels);
    Rows<std::int16_t> scaled(1, pixels);
    Rows<std::uint8_t> finished(1, pixels);

    std::size_t first = 0;
    std::vector<RowSum> rowSums;
    for (std::int64_t y = down.firstSource(); y < down.endSource(); y += step) {
        const std::uint8_t* rows[rowsAtOnce];
        for (std::int64_t k = 0; k < step; ++k)
            rows[k] = y + k < down.endSource() ? source.at(y + k) : rows[0];
        rowSums.clear();
        for (std::size_t i = first; i < taps.size() && taps[i].first < y + step; ++i) {
            const std::int64_t end = taps[i].first + taps[i].count;
            RowSum& sum = rowSums.emplace_back(RowSum {.isFirst = taps[i].first >= y,
                .isLast = end <= y + step,
                .sums = sums.at(i),
                .result = results.at(i)});
            for (std::int64_t k = 0; k < step; ++k) {
                const std::int64_t tap = y + k - taps[i].first;
                const bool isTap = tap >= 0 && tap < taps[i].count;
                sum.wordWeights[k] = isTap
                    ? down.values()[taps[i].offset + static_cast<std::size_t>(tap)]
                    : std::int16_t {0};
                sum.weights[k] = static_cast<std::int8_t>(sum.wordWeights[k]);
            }
        }
        loops.addBytes(rows, sourcePixels, rowSums.data(), rowSums.size(), down.sum());
        for (const RowSum& sum : rowSums) {
            if (!sum.isLast)
                break;
            loops.addAcross(sum.result, across, arranged.data(), scaled.at(0));
            loops.finish(scaled.at(0), pixels, source.finish(), finished.at(0));
            store(finished.at(0), static_cast<std::int64_t>(first++), 0, pixels);
        }
    }
}

/// Else: each row is scaled in width, then the few that belong to a row of the result are added.
template <class Store>
void drawAcrossFirst(SourceRows& source, const ResamplingWeights& across,
    const ResamplingWeights& down, const Store& store) {
    const ResamplingLoops& loops = resamplingLoops();
    const auto arranged = loops.arranged(across);
    const auto pixels = static_cast<std::int64_t>(across.taps().size());
    const std::int64_t sourcePixels = across.endSource() - across.firstSource();
    const auto& taps = down.taps();
    // Rows go in pairs, an even one and the next. As many as those of one row of the result.
    const auto mostPairs = static_cast<std::size_t>(down.maximumCount() / 2 + 1);
    Rows<std::int16_t> wide(1, sourcePixels);
    Rows<std::int16_t> scaled(2, pixels);
    Rows<std::int16_t> pairs(mostPairs, 2 * pixels);
    Rows<std::uint8_t> finished(1, pixels);
    const auto firstPair = [&](std::size_t i) { return taps[i].first / 2; };
    const auto endPair = [&](std::size_t i) { return (taps[i].first + taps[i].count + 1) / 2; };

    std::int64_t end = firstPair(0); // of the pairs that are there
    std::vector<const std::int16_t*> added(mostPairs);
    std::vector<std::int16_t> weights;
    for (std::size_t first = 0, last = 0; first < taps.size(); first = last) {
        for (end = std::max(end, firstPair(first)); end < endPair(first); ++end) {
            for (const std::int64_t y : {2 * end, 2 * end + 1}) {
                // There is none for a weight of 0 at the edge.
                const std::int64_t row = std::clamp(y, down.firstSource(), down.endSource() - 1);
                loops.widen(source.at(row), sourcePixels, wide.at(0));
                loops.addAcross(
                    wide.at(0), across, arranged.data(), scaled.at(static_cast<std::size_t>(y)));
            }
            loops.interleave(
                scaled.at(0), scaled.at(1), pixels, pairs.at(static_cast<std::size_t>(end)));
        }
        // An enlarged image has many rows that are made of the same ones.
        weights.clear();
        for (last = first; last < taps.size() && firstPair(last) == firstPair(first)
            && endPair(last) == endPair(first);
            ++last) {
            const auto begin =
                down.values().begin() + static_cast<std::ptrdiff_t>(taps[last].offset);
            weights.resize(
                (last - first) * 2 * mostPairs + static_cast<std::size_t>(taps[last].first % 2));
            weights.insert(weights.end(), begin, begin + taps[last].count);
        }
        weights.resize((last - first) * 2 * mostPairs);
        for (std::int64_t x = 0; x < pixels; x += stripWidth) {
            for (std::int64_t pair = firstPair(first); pair < endPair(first); ++pair)
                added[static_cast<std::size_t>(pair - firstPair(first))] =
                    pairs.at(static_cast<std::size_t>(pair)) + 8 * x;
            const std::int64_t count = std::min(stripWidth, pixels - x);
            for (std::size_t i = first; i < last; ++i) {
                loops.addDown(added.data(), weights.data() + (i - first) * 2 * mostPairs,
                    endPair(first) - firstPair(first), bitsOf(down), count, source.finish(),
                    finished.at(0));
                store(finished.at(0), static_cast<std::int64_t>(i), x, count);
            }
        }
    }
}

/// The part of `length` pixels at `begin` that lies on a side of `side`.
struct Visible {
    Visible(std::int64_t begin, std::int64_t length, std::int64_t side)
        : first(std::max<std::int64_t>(0, -begin))
        , end(std::min(length, side - begin)) { }

    std::int64_t first; ///< counted from `begin`
    std::int64_t end; ///< not beyond `first` where nothing is visible
};

/// So large a part of the canvas is drawn at a time. Few canvases are larger, and what is kept of
/// each row and column meanwhile is bounded.
constexpr std::int64_t tileSide = 8192;

constexpr std::uint32_t fullOpacity = 1 << 16;

} // namespace

bool drawScaled(const CGImage& image, const PixelRect& rect, std::int32_t interpolationQuality,
    double alpha, std::uint8_t* canvas, const CGImageLayout& canvasLayout) try {
    const std::int64_t top = canvasLayout.height - rect.y - rect.height; // counted from the top
    const Visible across(rect.x, rect.width, canvasLayout.width);
    const Visible down(top, rect.height, canvasLayout.height);
    // Cut, not rounded: half the opacity is never more than that.
    const auto opacity =
        static_cast<std::uint32_t>(std::fmin(std::fmax(alpha, 0), 1) * fullOpacity);
    using Width = ResamplingWeights::Width;
    const bool isDownFirst =
        ResamplingWeights::mayBeNarrow(image.height(), rect.height, interpolationQuality);

    for (std::int64_t y = down.first; y < down.end; y += tileSide) {
        const ResamplingWeights downWeights(image.height(), rect.height, y,
            std::min(tileSide, down.end - y), interpolationQuality,
            isDownFirst ? Width::narrow : Width::wide);
        for (std::int64_t x = across.first; x < across.end; x += tileSide) {
            const ResamplingWeights acrossWeights(image.width(), rect.width, x,
                std::min(tileSide, across.end - x), interpolationQuality, Width::wide);
            std::uint8_t* const begin =
                canvas + (top + y) * canvasLayout.bytesPerRow + 4 * (rect.x + x);
            const auto store = [&](const std::uint8_t* part, std::int64_t row, std::int64_t column,
                                   std::int64_t count) {
                std::uint8_t* const to = begin + row * canvasLayout.bytesPerRow + 4 * column;
                if (opacity == fullOpacity) {
                    std::memcpy(to, part, static_cast<std::size_t>(4 * count));
                    return;
                }
                for (std::int64_t i = 0; i < 4 * count; ++i)
                    to[i] = static_cast<std::uint8_t>(part[i] * opacity / fullOpacity);
            };
            SourceRows source(image, acrossWeights.firstSource(),
                acrossWeights.endSource() - acrossWeights.firstSource());
            if (isDownFirst)
                drawDownFirst(source, acrossWeights, downWeights, store);
            else
                drawAcrossFirst(source, acrossWeights, downWeights, store);
        }
    }
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

} // namespace kw
