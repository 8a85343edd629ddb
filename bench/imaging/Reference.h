// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What a reduction should give: the formula, in double precision.
#pragma once

#include <bench/imaging/Pictures.h>

#include <vector>

namespace kw::bench {

/// The picture at another size by a Lanczos filter of three lobes that is widened for a reduction
/// and whose weights add up to 1 at the edges, too. In the picture's order of channels, four a
/// pixel, within 0 to 255 and colors within alpha, not rounded.
std::vector<double> referenceScaled(const Picture& picture, Size size);

/// How close pixels come, in dB, over the channels that carry something. Even the closest bytes are
/// about 59 dB off.
double peakSignalToNoise(const std::vector<double>& reference, const Bytes& pixels, int channels);

/// The reference as bytes.
Bytes rounded(const std::vector<double>& reference);

} // namespace kw::bench
