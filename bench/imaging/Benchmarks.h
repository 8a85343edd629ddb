// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The parts of imaging_bench.
#pragma once

#include <bench/RatioReporter.h>

#include <functional>
#include <string>

namespace kw::bench {

/// Says what came out.
using Summary = std::function<void(const RatioReporter& reporter)>;

Summary registerScaling();
Summary registerGamma();
Summary registerReflection();
Summary registerFile();

/// Reduces rings that get finer outwards, and writes pictures of what each made of them, which show
/// as more rings what a filter lets through. False where they cannot be written.
bool writeZonePlates(const std::string& folder);

/// Prints how close reductions of pictures that are hard come to the formula.
void printQuality();

/// Prints the memory that reducing 24 megapixels needs besides the picture and the result.
void printPeakMemory();

} // namespace kw::bench
