// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <cstdint>

namespace kw {

/// How the pixels between pixels are found.
enum NSImageInterpolation : std::int32_t {
    NSImageInterpolationDefault = 0, ///< as low
    NSImageInterpolationNone = 1, ///< the nearest pixel
    NSImageInterpolationLow = 2, ///< between the four nearest pixels, also where many are left out
    NSImageInterpolationHigh = 3, ///< Lanczos with three lobes, widened for a reduction
    NSImageInterpolationMedium = 4, ///< the mean of what is covered; enlarging as low
};

/// An image at another size: RGBA with 8 bits each, premultiplied, rows without padding.
///
/// With `preserveRatio`, the size at which the image is drawn is found from the given one by the
/// image's longer side: a landscape takes the width, anything else, a square too, the height; the
/// other side follows, cut to whole pixels, and may exceed what was given. With `keepSquareRect`
/// the result has the given size all the same. The image then lies half the difference of the sizes
/// from the result's left and lower edge, also where it is larger, so that it is cut off at the far
/// side only; the rest is transparent. Else the result is just the image.
///
/// `alpha`, from 0 to 1, is the image's opacity in the result. An unknown `interpolationQuality`
/// counts as the default. The image's edges are whole pixels, so `shouldAntialias` changes nothing.
///
/// Null where there is no image, where it has other than 8 bits a component, where a side of the
/// result would be 0 or less, or where there is no memory for it (2^32 bytes at most). Any thread.
KW_EXPORT CGImageRef kwCreateScaledCGImageFromCGImage(const CGImageRef& image, std::int64_t width,
    std::int64_t height, bool preserveRatio, bool shouldAntialias, bool keepSquareRect,
    double alpha, std::int32_t interpolationQuality);

} // namespace kw
