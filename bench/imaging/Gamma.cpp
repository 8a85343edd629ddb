// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Gamma on 24 megapixels beside a table per byte, a table per byte and alpha, and a plain copy.
#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/Pictures.h>

#include <benchmark/benchmark.h>
#include <libyuv.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

namespace kw::bench {

namespace {

constexpr float gammaValue = 2.2F;

/// Premultiplied RGBA.
Bytes premultiplied(bool isOpaque) {
    Bytes pixels = largePhoto().pixels;
    for (std::size_t i = 0; !isOpaque && i < pixels.size(); i += 4) {
        const auto alpha = static_cast<unsigned>(i / 4 % 6000 * 255 / 5999);
        for (std::size_t color = i; color < i + 3; ++color)
            pixels[color] = static_cast<std::uint8_t>(pixels[color] * alpha / 255);
        pixels[i + 3] = static_cast<std::uint8_t>(alpha);
    }
    return pixels;
}
const Bytes& pixelsOf(bool isOpaque) {
    static const Bytes opaque = premultiplied(true);
    static const Bytes withAlpha = premultiplied(false);
    return isOpaque ? opaque : withAlpha;
}

const GammaTable& gammaTable() {
    static const GammaTable table = [] {
        GammaTable values {};
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = static_cast<std::uint32_t>(
                std::lround(32768 * std::pow(static_cast<double>(i) / 255, gammaValue)));
        return values;
    }();
    return table;
}

std::uint8_t adjusted(unsigned color, unsigned alpha) {
    const double straight = alpha == 0 ? 0 : std::min(1.0, static_cast<double>(color) / alpha);
    return static_cast<std::uint8_t>(std::lround(std::pow(straight, gammaValue) * alpha));
}

/// One table for each byte of a pixel, in place; right for opaque pixels alone.
void adjustByLibyuv(NSBitmapImageRep& bitmap) {
    static const auto table = [] {
        std::array<std::uint8_t, 1024> values {};
        for (unsigned i = 0; i < 256; ++i) {
            std::fill_n(&values[4 * std::size_t {i}], 3, adjusted(i, 255));
            values[4 * std::size_t {i} + 3] = static_cast<std::uint8_t>(i);
        }
        return values;
    }();
    libyuv::ARGBColorTable(bitmap.bitmapData(), static_cast<int>(bitmap.bytesPerRow()),
        table.data(), 0, 0, static_cast<int>(bitmap.pixelsWide()),
        static_cast<int>(bitmap.pixelsHigh()));
}

/// A table of all colors at all alphas.
void adjustByLoop(NSBitmapImageRep& bitmap) {
    static const auto table = [] {
        Bytes values(std::size_t {256} * 256);
        for (unsigned i = 0; i < values.size(); ++i)
            values[i] = adjusted(i % 256, i / 256);
        return values;
    }();
    std::uint8_t* pixel = bitmap.bitmapData();
    const std::uint8_t* const end = pixel + bitmap.layout().byteCount();
    for (; pixel != end; pixel += 4) {
        const std::uint8_t* const row = &table[std::size_t {pixel[3]} * 256];
        pixel[0] = row[pixel[0]];
        pixel[1] = row[pixel[1]];
        pixel[2] = row[pixel[2]];
    }
}

/// From other memory, so that it reads and writes as much as the others.
void copy(NSBitmapImageRep& bitmap) {
    std::memcpy(bitmap.bitmapData(), pixelsOf(true).data(), pixelsOf(true).size());
}

struct Adjustment {
    const char* name;
    void (*apply)(NSBitmapImageRep& bitmap);
};
constexpr Adjustment adjustments[] = {
    {"toolkit value", [](NSBitmapImageRep& bitmap) { adjustGammaWithValue(bitmap, gammaValue); }},
    {"toolkit table",
        [](NSBitmapImageRep& bitmap) { adjustGammaWithArray(bitmap, &gammaTable()); }},
    {"libyuv table", adjustByLibyuv},
    {"loop over 256x256", adjustByLoop},
    {"memcpy", copy},
};

void measure(benchmark::State& state, const Adjustment& adjustment, bool isOpaque) {
    const auto bitmap =
        NSBitmapImageRep::initWithLayout(CGImageLayout::premultipliedRGBA(6000, 4000));
    const Bytes& pixels = pixelsOf(isOpaque);
    for (auto _ : state) {
        // Applied again and again, all would be black.
        state.PauseTiming();
        std::ranges::copy(pixels, bitmap->bitmapData());
        state.ResumeTiming();
        adjustment.apply(*bitmap);
    }
}

std::string nameOf(bool isOpaque, const Adjustment& adjustment) {
    return (isOpaque ? "gamma_opaque/" : "gamma_alpha/") + std::string(adjustment.name);
}

} // namespace

Summary registerGamma() {
    for (const bool isOpaque : {true, false}) {
        for (const Adjustment& adjustment : adjustments) {
            benchmark::RegisterBenchmark(nameOf(isOpaque, adjustment).c_str(),
                [&adjustment, isOpaque](
                    benchmark::State& state) { measure(state, adjustment, isOpaque); })
                ->Unit(benchmark::kMillisecond)
                ->MeasureProcessCPUTime();
        }
    }
    return [](const RatioReporter& reporter) {
        std::printf("\n");
        for (const bool isOpaque : {true, false}) {
            for (const Adjustment& own : {adjustments[0], adjustments[1]}) {
                for (const Adjustment& other : {adjustments[2], adjustments[3], adjustments[4]})
                    reporter.printRatio(nameOf(isOpaque, own), nameOf(isOpaque, other));
            }
        }
    };
}

} // namespace kw::bench
