// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Scaling beside its peers: time on the processor, and how close the pixels come to the formula.
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/Reference.h>
#include <bench/imaging/ScalingPeers.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace kw::bench {

namespace {

struct Workload {
    const char* name;
    const Picture& (*picture)();
    Size size;
    bool isReduction = true;
};

const Picture& screenPhoto() {
    static const Picture picture = photo({1920, 1080});
    return picture;
}
const Picture& smallPhoto() {
    static const Picture picture = photo({256, 256});
    return picture;
}
const Picture& largeIcon() {
    static const Picture picture = icon(512);
    return picture;
}

constexpr Workload workloads[] = {
    {"6000x4000_to_256x171", largePhoto, {256, 171}},
    {"6000x4000_to_1024x683", largePhoto, {1024, 683}},
    {"1920x1080_to_128x72", screenPhoto, {128, 72}},
    {"icon_512_to_32", largeIcon, {32, 32}},
    {"256_to_1024", smallPhoto, {1024, 1024}, false},
};

void measure(benchmark::State& state, const Workload& workload, const ScalingPeer& peer) {
    try {
        const Scaling scaling = peer.prepare(workload.picture(), workload.size);
        for (auto _ : state) {
            const double seconds = scaling.run();
            if (peer.timesItself)
                state.SetIterationTime(seconds);
        }
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
    }
}

std::string nameOf(const Workload& workload, const ScalingPeer& peer) {
    return std::string(workload.name) + "/" + peer.name;
}

/// A plain read of the largest picture, which no reduction of it can beat.
void readOnce(benchmark::State& state) {
    const Picture& picture = largePhoto();
    for (auto _ : state) {
        const auto* const words = reinterpret_cast<const std::uint64_t*>(picture.pixels.data());
        benchmark::DoNotOptimize(
            std::accumulate(words, words + picture.pixels.size() / 8, std::uint64_t {0}));
    }
}

/// Says whether a goal is met: so close, and in so much of the peer's time.
void printGoal(const char* name, double decibels, double leastDecibels, double time,
    std::optional<double> peerTime, double part, const char* peer) {
    if (!peerTime)
        return;
    const bool isMet = decibels >= leastDecibels && time <= part * *peerTime;
    std::printf("%-24s %s: %.1f dB (goal %.0f), %.2f of %s (goal %.2f)\n", name,
        isMet ? "met" : "MISSED", decibels, leastDecibels, time / *peerTime, peer, part);
}

void printWorkload(const RatioReporter& reporter, const Workload& workload) {
    const ScalingPeer& toolkit = scalingPeers().front();
    const auto toolkitTime = reporter.time(nameOf(workload, toolkit));
    if (!toolkitTime)
        return;
    const Picture& picture = workload.picture();
    const auto reference = referenceScaled(picture, workload.size);
    const auto decibelsOf = [&](const ScalingPeer& peer) {
        const Scaling scaling = peer.prepare(picture, workload.size);
        scaling.run();
        return peakSignalToNoise(reference, scaling.result(), picture.channels());
    };
    std::printf("\n%-24s %9s %9s %7s\n", workload.name, "ms", "/ toolkit", "dB");
    for (const ScalingPeer& peer : scalingPeers()) {
        if (const auto time = reporter.time(nameOf(workload, peer)))
            std::printf("%-24s %9.3f %9.2f %7.1f\n", peer.name, *time, *time / *toolkitTime,
                decibelsOf(peer));
    }
    std::printf("%-24s %9s %9s %7.1f\n", "rounded reference", "", "",
        peakSignalToNoise(reference, rounded(reference), picture.channels()));

    const double decibels = decibelsOf(toolkit);
    const auto qt = reporter.time(std::string(workload.name) + "/Qt smooth");
    const auto zimg = reporter.time(std::string(workload.name) + "/zimg planar");
    if (workload.isReduction) {
        printGoal(workload.name, decibels, 50, *toolkitTime, qt, 1, "Qt smooth");
        printGoal(workload.name, decibels, 54, *toolkitTime, zimg, 0.5, "zimg planar");
    } else {
        printGoal(workload.name, decibels, 50, *toolkitTime, zimg, 1, "zimg planar");
    }
}

} // namespace

Summary registerScaling() {
    for (const Workload& workload : workloads) {
        for (const ScalingPeer& peer : scalingPeers()) {
            auto* const registered = benchmark::RegisterBenchmark(nameOf(workload, peer).c_str(),
                [&](benchmark::State& state) { measure(state, workload, peer); });
            registered->Unit(benchmark::kMillisecond);
            if (peer.timesItself)
                registered->UseManualTime();
            else
                registered->MeasureProcessCPUTime();
        }
    }
    benchmark::RegisterBenchmark("read_24_megapixels", readOnce)->Unit(benchmark::kMillisecond);
    return [](const RatioReporter& reporter) {
        for (const Workload& workload : workloads)
            printWorkload(reporter, workload);
        if (const auto time = reporter.time("read_24_megapixels"))
            std::printf("\nReading 24 megapixels once: %.2f ms\n", *time);
    };
}

} // namespace kw::bench
