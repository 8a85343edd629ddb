// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/imaging/KWScaledImage.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSImage.h>

#include <memory>

namespace kw {

/// A new image with one representation: that of the image's which is best for the size, at that
/// size, see NSBitmapImageRep+Thumb.h. Never null: where scaling fails the image is empty. An image
/// without representations gives an empty one. Throws an `NSException` named
/// "NSInvalidArgumentException" where the chosen representation has no such method, as only bitmaps
/// have one.
KW_EXPORT std::shared_ptr<NSImage> thumbForSize(const NSImage& image, NSSize size,
    bool preserveRatio, bool keepSquareRect, NSImageInterpolation imageInterpolation,
    bool shouldAntialias, bool correctWithColorProfile, float alpha);
KW_EXPORT std::shared_ptr<NSImage> thumbForSize(
    const NSImage& image, NSSize size, bool preserveRatio, float alpha);
KW_EXPORT std::shared_ptr<NSImage> thumbForSize(
    const NSImage& image, NSSize size, bool preserveRatio);
/// In a canvas of just the size that was asked for.
KW_EXPORT std::shared_ptr<NSImage> squareThumbForSize(
    const NSImage& image, NSSize size, bool preserveRatio);

} // namespace kw
