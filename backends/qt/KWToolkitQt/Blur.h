// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace kw::qt {

/// How many pixels a blur spreads beyond what is blurred.
int blurExtent(double sigma);

/// Blurs a mask (`Format_Alpha8`) in place, close to a Gaussian of standard deviation `sigma`, in
/// pixels. What lies outside counts as transparent.
void blurMask(QImage& mask, double sigma);

} // namespace kw::qt
