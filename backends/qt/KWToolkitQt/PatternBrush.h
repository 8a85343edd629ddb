// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/CGPattern.h>

#include <QBrush>
#include <QTransform>

namespace kw::qt {

/// Paints a pattern's cells in the pattern's coordinates. `toDevice`, from there to pixels, tells
/// how fine they are to be. Nothing is painted for bounds, steps or transforms that are empty, no
/// numbers or beyond all pixels, nor for steps of less than half a pixel.
QBrush patternBrush(const CGPattern& pattern, double alpha, const QTransform& toDevice);

} // namespace kw::qt
