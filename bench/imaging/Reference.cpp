// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/Reference.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>

namespace kw::bench {

namespace {

constexpr double lobes = 3;

double sinc(double x) {
    return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

struct Taps {
    int first;
    std::vector<double> weights;
};

std::vector<Taps> tapsOf(int from, int to) {
    const double scale = static_cast<double>(from) / to;
    const double width = std::max(scale, 1.0);
    std::vector<Taps> all(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const double center = (i + 0.5) * scale;
        const int first = std::max(0, static_cast<int>(std::floor(center - lobes * width)));
        const int last = std::min(from - 1, static_cast<int>(std::ceil(center + lobes * width)));
        Taps& taps = all[static_cast<std::size_t>(i)];
        taps.first = first;
        for (int place = first; place <= last; ++place) {
            const double x = (place + 0.5 - center) / width;
            taps.weights.push_back(std::fabs(x) < lobes ? sinc(x) * sinc(x / lobes) : 0);
        }
        const double sum = std::accumulate(taps.weights.begin(), taps.weights.end(), 0.0);
        for (double& weight : taps.weights)
            weight /= sum;
    }
    return all;
}

} // namespace

std::vector<double> referenceScaled(const Picture& picture, Size size) {
    const auto across = tapsOf(picture.size.width, size.width);
    const auto down = tapsOf(picture.size.height, size.height);
    const std::size_t rowLength = 4 * static_cast<std::size_t>(size.width);

    std::vector<double> rows(rowLength * static_cast<std::size_t>(picture.size.height));
    auto out = rows.begin();
    for (int y = 0; y < picture.size.height; ++y) {
        const std::uint8_t* const row =
            picture.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture.stride();
        for (const Taps& taps : across) {
            const std::uint8_t* pixel = row + static_cast<std::ptrdiff_t>(taps.first) * 4;
            for (const double weight : taps.weights) {
                for (int i = 0; i < 4; ++i)
                    out[i] += weight * *pixel++;
            }
            out += 4;
        }
    }

    std::vector<double> result(rowLength * down.size());
    for (std::size_t y = 0; y < down.size(); ++y) {
        double* const to = result.data() + y * rowLength;
        const double* from = rows.data() + static_cast<std::size_t>(down[y].first) * rowLength;
        for (const double weight : down[y].weights) {
            for (std::size_t i = 0; i < rowLength; ++i)
                to[i] += weight * *from++;
        }
        for (std::size_t i = 0; i < rowLength; i += 4) {
            const double alpha = std::clamp(to[i + 3], 0.0, 255.0);
            to[i + 3] = alpha;
            for (std::size_t color = i; color < i + 3; ++color)
                to[color] = std::clamp(to[color], 0.0, alpha);
        }
    }
    return result;
}

double peakSignalToNoise(const std::vector<double>& reference, const Bytes& pixels, int channels) {
    double squares = 0;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const double difference = reference[i] - pixels[i];
        if (i % 4 < static_cast<std::size_t>(channels))
            squares += difference * difference;
    }
    const double count = static_cast<double>(reference.size()) / 4 * channels;
    return 10 * std::log10(255 * 255 * count / squares);
}

Bytes rounded(const std::vector<double>& reference) {
    Bytes bytes(reference.size());
    std::ranges::transform(reference, bytes.begin(),
        [](double value) { return static_cast<std::uint8_t>(std::lround(value)); });
    return bytes;
}

} // namespace kw::bench
