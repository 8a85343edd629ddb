// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Layers laid out by constraints, in chains of 1,000: the time for each must not grow with their
// number.
#include <KWToolkit/platform/ui/CAConstraintLayoutManager.h>
#include <KWToolkit/platform/ui/CALayer.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <bench/RatioReporter.h>

#include <memory>
#include <string>

namespace {

using namespace kw;
using enum CAConstraintAttribute;

constexpr std::size_t chainLength = 1'000;

/// Each layer but a chain's first is beside the one before it, and as wide.
std::shared_ptr<CALayer> layerWithChains(std::size_t count) {
    const auto root = std::make_shared<CALayer>();
    for (std::size_t i = count; i-- > 0;) { // sources come after what depends on them
        const auto layer = std::make_shared<CALayer>();
        layer->setName(std::to_string(i));
        if (i % chainLength == 0) {
            layer->addConstraint({minX, "superlayer", minX});
            layer->addConstraint({width, "superlayer", width, 1.0 / chainLength});
        } else {
            layer->addConstraint({minX, std::to_string(i - 1), maxX});
            layer->addConstraint({width, std::to_string(i - 1), width});
        }
        layer->addConstraint({midY, "superlayer", midY});
        root->addSublayer(layer);
    }
    return root;
}

/// Nanoseconds a layer, as all of them get new frames or keep those they have.
void layOut(benchmark::State& state, bool resizes) {
    const auto count = static_cast<std::size_t>(state.range());
    CATransaction::begin();
    CATransaction::setDisableActions(true);
    const auto root = layerWithChains(count);
    CAConstraintLayoutManager manager;
    double side = chainLength;
    for (auto _ : state) {
        root->setBounds({{0, 0}, {side, side}});
        manager.layoutSublayersOfLayer(*root);
        side += resizes ? 1 : 0;
    }
    state.counters["each"] = benchmark::Counter(static_cast<double>(count),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    CATransaction::commit();
}

BENCHMARK_CAPTURE(layOut, moved, true)->Arg(1'000)->Arg(10'000)->Arg(100'000);
BENCHMARK_CAPTURE(layOut, kept, false)->Arg(1'000)->Arg(10'000)->Arg(100'000);

} // namespace

int main(int argc, char** argv) {
    if (!bench::initializeInTurns(argc, argv, 5, "0.1"))
        return 2;
    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nFor ten times as many\n");
    for (const std::string name : {"layOut/moved", "layOut/kept"}) {
        reporter.printRatio(name + "/10000", name + "/1000");
        reporter.printRatio(name + "/100000", name + "/10000");
    }
}
