// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/ResamplingWeights.h>

#include <KWToolkit/imaging/KWScaledImage.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>

namespace kw {

namespace {

/// The weights, of any sum, of the source pixels from `first` on.
struct RealTaps {
    std::int64_t first;
    std::vector<double> weights;
};

/// Where a scaled pixel lies: its center and its width, in source pixels.
struct Footprint {
    double center;
    double width;
    std::int64_t sourceSide;

    std::int64_t inSource(double pixel) const {
        return std::clamp(
            static_cast<std::int64_t>(std::floor(pixel)), std::int64_t {0}, sourceSide - 1);
    }
};

void nearest(const Footprint& footprint, RealTaps& taps) {
    taps.first = footprint.inSource(footprint.center);
    taps.weights.assign(1, 1);
}

void bilinear(const Footprint& footprint, RealTaps& taps) {
    const double left = footprint.center - 0.5;
    taps.first = footprint.inSource(left);
    if (left < 0 || taps.first + 1 == footprint.sourceSide) {
        taps.weights.assign(1, 1);
        return;
    }
    const double share = left - static_cast<double>(taps.first);
    taps.weights.assign({1 - share, share});
}

/// The mean of what a pixel covers; an enlarged one is found between two.
void areaAverage(const Footprint& footprint, RealTaps& taps) {
    if (footprint.width <= 1) {
        bilinear(footprint, taps);
        return;
    }
    const double begin = footprint.center - footprint.width / 2;
    const double end = begin + footprint.width;
    taps.first = footprint.inSource(begin);
    taps.weights.clear();
    for (std::int64_t i = taps.first; i <= footprint.inSource(std::nextafter(end, begin)); ++i)
        taps.weights.push_back(std::max(0.0,
            std::min(end, static_cast<double>(i + 1)) - std::max(begin, static_cast<double>(i))));
}

/// A sinc windowed by the middle of one three times as wide (Duchon 1979), as wide as what it is to
/// leave out. Pixels beyond the edge do not count.
void lanczos(const Footprint& footprint, RealTaps& taps) {
    constexpr double lobes = 3;
    const double scale = std::max(footprint.width, 1.0);
    const double middle = footprint.center - 0.5; // in pixels' centers
    taps.first =
        std::max<std::int64_t>(0, static_cast<std::int64_t>(std::ceil(middle - lobes * scale)));
    const std::int64_t last = std::min(
        footprint.sourceSide - 1, static_cast<std::int64_t>(std::floor(middle + lobes * scale)));
    taps.weights.clear();
    // The sines of equal steps, each from the one before.
    const double start = M_PI * (static_cast<double>(taps.first) - middle) / scale;
    const double step = M_PI / scale;
    std::complex<double> wave = std::polar(1.0, start);
    std::complex<double> window = std::polar(1.0, start / lobes);
    const std::complex<double> waveStep = std::polar(1.0, step);
    const std::complex<double> windowStep = std::polar(1.0, step / lobes);
    for (std::int64_t i = taps.first; i <= last; ++i) {
        const double angle = start + static_cast<double>(i - taps.first) * step;
        const bool isMiddle = std::fabs(angle) < 1e-9;
        taps.weights.push_back(
            isMiddle ? 1 : lobes * wave.imag() * window.imag() / (angle * angle));
        wave *= waveStep;
        window *= windowStep;
    }
}

struct Kernel {
    void (*weigh)(const Footprint&, RealTaps&);
    /// How far from its center a pixel looks, in pixels of which the source has `scale` each.
    double (*radius)(double scale);
};

Kernel kernelOf(std::int32_t interpolationQuality) {
    switch (interpolationQuality) {
    case NSImageInterpolationNone:
        return {&nearest, [](double) { return 1.0; }};
    case NSImageInterpolationHigh:
        return {&lanczos, [](double scale) { return 3 * std::max(scale, 1.0); }};
    case NSImageInterpolationMedium:
        return {&areaAverage, [](double scale) { return scale / 2 + 1; }};
    default:
        return {&bilinear, [](double) { return 1.0; }};
    }
}

/// Whole weights whose partial sums are the rounded real ones, so that they add up exactly.
void appendWhole(
    const std::vector<double>& weights, int wholeSum, std::vector<std::int16_t>& values) {
    const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
    double partial = 0;
    long written = 0;
    for (const double weight : weights) {
        partial += weight;
        const long next = std::lround(partial / sum * wholeSum);
        values.push_back(static_cast<std::int16_t>(next - written));
        written = next;
    }
}

bool hasMany(std::int32_t interpolationQuality) {
    return interpolationQuality == NSImageInterpolationHigh
        || interpolationQuality == NSImageInterpolationMedium;
}

/// As much as leaves the largest weight, which is about 1 / scale and at an edge a quarter more, in
/// its bits, and all sums in 32.
int wholeSum(double scale, std::int32_t interpolationQuality, ResamplingWeights::Width width) {
    constexpr int atMost = 1 << 16;
    constexpr int wide = 1 << 14;
    if (width == ResamplingWeights::Width::narrow)
        return static_cast<int>(std::min(98 * scale, static_cast<double>(16 * atMost)));
    return scale >= 4 && hasMany(interpolationQuality) ? atMost : wide;
}

} // namespace

bool ResamplingWeights::mayBeNarrow(
    std::int64_t sourceSide, std::int64_t scaledSide, std::int32_t interpolationQuality) {
    constexpr double least = 5.33;
    return hasMany(interpolationQuality)
        && static_cast<double>(sourceSide) / static_cast<double>(scaledSide) >= least;
}

ResamplingWeights::ResamplingWeights(std::int64_t sourceSide, std::int64_t scaledSide,
    std::int64_t first, std::int64_t count, std::int32_t interpolationQuality, Width width)
    : m_sum(wholeSum(static_cast<double>(sourceSide) / static_cast<double>(scaledSide),
          interpolationQuality, width)) {
    const Kernel kernel = kernelOf(interpolationQuality);
    const double scale = static_cast<double>(sourceSide) / static_cast<double>(scaledSide);
    const double radius = kernel.radius(scale);
    const auto centerOf = [&](std::int64_t i) {
        return (static_cast<double>(first + i) + 0.5) * scale;
    };
    const auto isInside = [&](std::int64_t i) {
        return centerOf(i) - radius >= 1
            && centerOf(i) + radius <= static_cast<double>(sourceSide - 1);
    };
    // After so many scaled pixels the places between source pixels come again.
    const std::int64_t divisor = std::gcd(sourceSide, scaledSide);
    const std::int64_t period = scaledSide / divisor;

    m_taps.reserve(static_cast<std::size_t>(count));
    m_firstSource = sourceSide;
    RealTaps real {};
    for (std::int64_t i = 0; i < count; ++i) {
        Taps taps;
        if (i >= period && isInside(i - period) && isInside(i)) {
            taps = m_taps[static_cast<std::size_t>(i - period)];
            taps.first += sourceSide / divisor;
        } else {
            kernel.weigh({centerOf(i), scale, sourceSide}, real);
            taps = {real.first, static_cast<std::int64_t>(real.weights.size()), m_values.size()};
            appendWhole(real.weights, m_sum, m_values);
            m_values.resize((m_values.size() + padding - 1) / padding * padding);
        }
        m_firstSource = std::min(m_firstSource, taps.first);
        m_endSource = std::max(m_endSource, taps.first + taps.count);
        m_maximumCount = std::max(m_maximumCount, taps.count);
        m_taps.push_back(taps);
    }
}

} // namespace kw
