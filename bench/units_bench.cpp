// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Sizes in units beside ICU's number formatter, made once, and the C library's printf, which does
// not take zeros away and does not group digits.
#include <KWToolkit/appservices/KWByteUnits.h>
#include <bench/RatioReporter.h>

#include <benchmark/benchmark.h>
#include <unicode/numberformatter.h>

#include <array>
#include <cstdio>
#include <string>

namespace {

using namespace kw;

/// Sizes of all units, the next at each call.
double nextSize() {
    constexpr std::array<double, 8> sizes {
        512, 1536, 999'999, 1'234'567, 5e9, 123'456'789'012, 7.77e15, 1e30};
    static std::size_t next = 0;
    return sizes[next++ % sizes.size()];
}

/// The unit, and the size in it.
std::size_t scale(double& size) {
    std::size_t exponent = 0;
    for (; size >= 1000 && exponent < 8; ++exponent)
        size /= 1000;
    return exponent;
}

void sizeOurs(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(unitStringFromBytes(nextSize(), KWByteUnitsDecimalStyle));
}

void sizeICU(benchmark::State& state) {
    using namespace icu::number;
    const LocalizedNumberFormatter formatter =
        NumberFormatter::withLocale(icu::Locale::getUS()).precision(Precision::maxFraction(2));
    for (auto _ : state) {
        double size = nextSize();
        const std::size_t exponent = scale(size);
        UErrorCode error = U_ZERO_ERROR;
        std::string text;
        formatter.formatDouble(size, error).toString(error).toUTF8String(text);
        text.append(" ").append(exponent == 0 ? "" : std::string(1, " kMGTPEZY"[exponent])) += 'B';
        benchmark::DoNotOptimize(text);
    }
}

void sizePrintf(benchmark::State& state) {
    for (auto _ : state) {
        double size = nextSize();
        const std::size_t exponent = scale(size);
        std::array<char, 64> text {};
        std::snprintf(text.data(), text.size(), "%.2f %cB", size, " kMGTPEZY"[exponent]);
        benchmark::DoNotOptimize(std::string(text.data()));
    }
}

BENCHMARK(sizeOurs);
BENCHMARK(sizeICU);
BENCHMARK(sizePrintf);

} // namespace

int main(int argc, char** argv) {
    if (!bench::initializeInTurns(argc, argv, 9, "0.1"))
        return 2;
    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nHow many times as fast as each:\n");
    reporter.printRatio("sizeICU", "sizeOurs");
    reporter.printRatio("sizePrintf", "sizeOurs");
}
