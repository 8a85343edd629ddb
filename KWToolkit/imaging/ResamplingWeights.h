// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// How much each pixel of a row or column counts in each of another number of pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kw {

class ResamplingWeights {
public:
    /// What one scaled pixel is made of.
    struct Taps {
        std::int64_t first = 0; ///< the source pixel of the first weight
        std::int64_t count = 0;
        std::size_t offset = 0; ///< of the first weight in `values`
    };

    /// Narrow weights are bytes. Of many, their errors mostly cancel out: a photo keeps 59 dB, and
    /// stripes as fine as pixels 51.
    enum class Width { narrow, wide };
    /// Whether a reduction is such that narrow weights are as good as wide ones.
    static bool mayBeNarrow(
        std::int64_t sourceSide, std::int64_t scaledSide, std::int32_t interpolationQuality);

    /// Scales `sourceSide` pixels to `scaledSide`; of these only a range is made.
    ResamplingWeights(std::int64_t sourceSide, std::int64_t scaledSide, std::int64_t first,
        std::int64_t count, std::int32_t interpolationQuality, Width width);

    const std::vector<Taps>& taps() const { return m_taps; }
    /// Whole weights. Each pixel's are followed by zeros up to a multiple of `padding`. Pixels at
    /// the same place between source pixels share theirs.
    const std::vector<std::int16_t>& values() const { return m_values; }
    static constexpr std::size_t padding = 8;
    /// What a pixel's weights add up to.
    int sum() const { return m_sum; }

    std::int64_t firstSource() const { return m_firstSource; }
    std::int64_t endSource() const { return m_endSource; }
    std::int64_t maximumCount() const { return m_maximumCount; }

private:
    std::vector<Taps> m_taps;
    int m_sum;
    std::vector<std::int16_t> m_values;
    std::int64_t m_firstSource = 0;
    std::int64_t m_endSource = 0;
    std::int64_t m_maximumCount = 0;
};

} // namespace kw
