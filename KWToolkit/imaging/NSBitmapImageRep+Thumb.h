// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/imaging/KWScaledImage.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <memory>

namespace kw {

/// A bitmap at another size, as `kwCreateScaledCGImageFromCGImage` makes it. The size is cut to
/// whole pixels: 99.9 is 99. Null where that function's is, and where a side asked for, or one of
/// the bitmap's own size, is 0 or less.
///
/// `correctWithColorProfile` has no effect: the result is always in the device's own colors.
KW_EXPORT std::shared_ptr<NSBitmapImageRep> thumbForSize(NSBitmapImageRep& bitmap, NSSize size,
    bool preserveRatio, bool keepSquareRect, NSImageInterpolation imageInterpolation,
    bool shouldAntialias, bool correctWithColorProfile, float alpha);
KW_EXPORT std::shared_ptr<NSBitmapImageRep> thumbForSize(
    NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio, float alpha);
KW_EXPORT std::shared_ptr<NSBitmapImageRep> thumbForSize(
    NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio);
/// In a canvas of just the size that was asked for.
KW_EXPORT std::shared_ptr<NSBitmapImageRep> squareThumbForSize(
    NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio);

} // namespace kw
