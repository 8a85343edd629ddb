// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSBitmapImageRep+Thumb.h>

#include <KWToolkit/imaging/Resampling.h>
#include <KWToolkit/platform/foundation/Message.h>

namespace kw {

std::shared_ptr<NSBitmapImageRep> thumbForSize(NSBitmapImageRep& bitmap, NSSize size,
    bool preserveRatio, bool keepSquareRect, NSImageInterpolation imageInterpolation,
    bool shouldAntialias, bool /*correctWithColorProfile*/, float alpha) {
    const auto width = wholePixels(size.width);
    const auto height = wholePixels(size.height);
    if (!width || !height)
        return nullptr;
    if (bitmap.pixelsHigh() < 1 || bitmap.pixelsWide() < 1 || bitmap.size().width <= 0
        || bitmap.size().height <= 0)
        return nullptr;
    return NSBitmapImageRep::initWithCGImage(
        kwCreateScaledCGImageFromCGImage(bitmap.CGImage(), *width, *height, preserveRatio,
            shouldAntialias, keepSquareRect, static_cast<double>(alpha), imageInterpolation));
}

std::shared_ptr<NSBitmapImageRep> thumbForSize(
    NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio, float alpha) {
    return thumbForSize(
        bitmap, size, preserveRatio, false, NSImageInterpolationHigh, true, false, alpha);
}

std::shared_ptr<NSBitmapImageRep> thumbForSize(
    NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio) {
    return thumbForSize(
        bitmap, size, preserveRatio, false, NSImageInterpolationHigh, true, false, 1);
}

std::shared_ptr<NSBitmapImageRep> squareThumbForSize(
    NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio) {
    return thumbForSize(
        bitmap, size, preserveRatio, true, NSImageInterpolationHigh, true, false, 1);
}

namespace {

[[maybe_unused]] const bool isListed =
    (NSBitmapImageRep::classObject().addMethods({
         method("thumbForSize:preserveRatio:keepSquareRect:imageInterpolation:shouldAntialias:"
                "correctWithColorProfile:alpha:",
             [](NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio, bool keepSquareRect,
                 NSImageInterpolation imageInterpolation, bool shouldAntialias,
                 bool correctWithColorProfile, float alpha) {
                 return thumbForSize(bitmap, size, preserveRatio, keepSquareRect,
                     imageInterpolation, shouldAntialias, correctWithColorProfile, alpha);
             }),
         method("thumbForSize:preserveRatio:alpha:",
             [](NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio, float alpha) {
                 return thumbForSize(bitmap, size, preserveRatio, alpha);
             }),
         method("thumbForSize:preserveRatio:",
             [](NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio) {
                 return thumbForSize(bitmap, size, preserveRatio);
             }),
         method("squareThumbForSize:preserveRatio:",
             [](NSBitmapImageRep& bitmap, NSSize size, bool preserveRatio) {
                 return squareThumbForSize(bitmap, size, preserveRatio);
             }),
     }),
        true);

} // namespace

} // namespace kw
