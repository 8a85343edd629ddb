// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The parts of imaging_bench. Each registers its benchmarks, and says afterwards what came out.
#pragma once

#include <bench/RatioReporter.h>

#include <functional>

namespace kw::bench {

using Summary = std::function<void(const RatioReporter& reporter)>;

Summary registerScaling();

} // namespace kw::bench
