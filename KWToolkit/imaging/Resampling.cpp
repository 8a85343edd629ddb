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

    std::size_t count() const { return m_count; }
    Component* at(std::size_t number) { return m_components.data() + number % m_count * m_size; }

private:
    std::size_t m_count;
    std::size_t m_size;
    AlignedVector<Component> m_components;
};

// One image's drawing. `store` is called with each row of the result and its number, in order.

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

    std::size_t mostUnderWay = 1;
    std::size_t mostDone = 1;
    std::size_t begun = 0;
    std::size_t ended = 0;
    for (std::size_t i = 0; i < taps.size(); ++i) {
        while (begun < taps.size() && taps[begun].first < taps[i].first + taps[i].count + step)
            ++begun;
        while (ended < taps.size()
            && taps[ended].first + taps[ended].count <= taps[i].first + taps[i].count + step)
            ++ended;
        mostUnderWay = std::max(mostUnderWay, begun - i);
        mostDone = std::max(mostDone, ended - i);
    }
    Rows<std::int32_t> sums(mostUnderWay, sourcePixels);
    Rows<std::int16_t> results(mostDone, sourcePixels);
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
                sum.weights[k] = tap < 0 || tap >= taps[i].count
                    ? std::int8_t {0}
                    : static_cast<std::int8_t>(
                          down.values()[taps[i].offset + static_cast<std::size_t>(tap)]);
            }
        }
        loops.addBytes(rows, sourcePixels, rowSums.data(), rowSums.size(), down.bits());
        for (const RowSum& sum : rowSums) {
            if (!sum.isLast)
                break;
            loops.addAcross(sum.result, across, arranged.data(), scaled.at(0));
            loops.finish(scaled.at(0), pixels, source.finish(), finished.at(0));
            store(finished.at(0), static_cast<std::int64_t>(first++));
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
    Rows<std::int16_t> wide(1, sourcePixels);
    Rows<std::int16_t> scaled(static_cast<std::size_t>(down.maximumCount()), pixels);
    Rows<std::int16_t> sum(1, pixels);
    Rows<std::uint8_t> finished(1, pixels);

    std::int64_t end = down.firstSource(); // of the rows that are scaled
    std::vector<const std::int16_t*> rows;
    std::vector<std::int16_t> weights;
    for (std::size_t i = 0; i < down.taps().size(); ++i) {
        const ResamplingWeights::Taps& taps = down.taps()[i];
        for (; end < taps.first + taps.count; ++end) {
            loops.widen(source.at(end), sourcePixels, wide.at(0));
            loops.addAcross(
                wide.at(0), across, arranged.data(), scaled.at(static_cast<std::size_t>(end)));
        }
        rows.clear();
        for (std::int64_t y = taps.first; y < taps.first + taps.count; ++y)
            rows.push_back(scaled.at(static_cast<std::size_t>(y)));
        if (rows.size() % 2 != 0)
            rows.push_back(rows.back()); // whose weight is 0
        loops.addDown(rows.data(), down.values().data() + taps.offset,
            static_cast<std::int64_t>(rows.size()), pixels, sum.at(0));
        loops.finish(sum.at(0), pixels, source.finish(), finished.at(0));
        store(finished.at(0), static_cast<std::int64_t>(i));
    }
}

/// The part of `length` pixels at `begin` that lies on a side of `side`.
struct Visible {
    Visible(std::int64_t begin, std::int64_t length, std::int64_t side)
        : first(std::max<std::int64_t>(0, -begin))
        , count(std::min(length, side - begin) - first) { }

    std::int64_t first; ///< counted from `begin`
    std::int64_t count; ///< 0 or less where nothing is
};

} // namespace

bool drawScaled(const CGImage& image, const PixelRect& rect, std::int32_t interpolationQuality,
    double alpha, std::uint8_t* canvas, const CGImageLayout& canvasLayout) try {
    const std::int64_t top = canvasLayout.height - rect.y - rect.height; // counted from the top
    const Visible across(rect.x, rect.width, canvasLayout.width);
    const Visible down(top, rect.height, canvasLayout.height);
    if (across.count < 1 || down.count < 1)
        return true;

    // Cut, not rounded: half the opacity is never more than that.
    const auto opacity = static_cast<std::uint32_t>(std::fmin(std::fmax(alpha, 0), 1) * 65536);
    using Width = ResamplingWeights::Width;
    const bool isDownFirst =
        ResamplingWeights::mayBeNarrow(image.height(), rect.height, interpolationQuality);
    const ResamplingWeights acrossWeights(
        image.width(), rect.width, across.first, across.count, interpolationQuality, Width::wide);
    const ResamplingWeights downWeights(image.height(), rect.height, down.first, down.count,
        interpolationQuality, isDownFirst ? Width::narrow : Width::wide);
    SourceRows source(image, acrossWeights.firstSource(),
        acrossWeights.endSource() - acrossWeights.firstSource());
    std::uint8_t* const begin =
        canvas + (top + down.first) * canvasLayout.bytesPerRow + 4 * (rect.x + across.first);
    const auto store = [&](const std::uint8_t* row, std::int64_t y) {
        std::uint8_t* const to = begin + y * canvasLayout.bytesPerRow;
        if (opacity == 65536) {
            std::memcpy(to, row, static_cast<std::size_t>(4 * across.count));
            return;
        }
        for (std::int64_t i = 0; i < 4 * across.count; ++i)
            to[i] = static_cast<std::uint8_t>(row[i] * opacity >> 16);
    };
    if (isDownFirst)
        drawDownFirst(source, acrossWeights, downWeights, store);
    else
        drawAcrossFirst(source, acrossWeights, downWeights, store);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

} // namespace kw
