// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSImage+Thumb.h>

#include <KWToolkit/imaging/NSBitmapImageRep+Thumb.h>
#include <KWToolkit/imaging/NSImage+BestRepresentationForSize.h>
#include <KWToolkit/platform/foundation/Message.h>

namespace kw {

namespace {

const SEL fullMessage("thumbForSize:preserveRatio:keepSquareRect:imageInterpolation:"
                      "shouldAntialias:correctWithColorProfile:alpha:");

} // namespace

std::shared_ptr<NSImage> thumbForSize(const NSImage& image, NSSize size, bool preserveRatio,
    bool keepSquareRect, NSImageInterpolation imageInterpolation, bool shouldAntialias,
    bool correctWithColorProfile, float alpha) {
    auto result = std::make_shared<NSImage>();
    if (const auto best = bestRepresentationForSize(image, size))
        result->addRepresentation(std::dynamic_pointer_cast<NSImageRep>(
            send<std::shared_ptr<NSObject>>(*best, fullMessage, size, preserveRatio, keepSquareRect,
                imageInterpolation, shouldAntialias, correctWithColorProfile, alpha)));
    return result;
}

std::shared_ptr<NSImage> thumbForSize(
    const NSImage& image, NSSize size, bool preserveRatio, float alpha) {
    return thumbForSize(
        image, size, preserveRatio, false, NSImageInterpolationHigh, true, false, alpha);
}

std::shared_ptr<NSImage> thumbForSize(const NSImage& image, NSSize size, bool preserveRatio) {
    return thumbForSize(
        image, size, preserveRatio, false, NSImageInterpolationHigh, true, false, 1);
}

std::shared_ptr<NSImage> squareThumbForSize(const NSImage& image, NSSize size, bool preserveRatio) {
    return thumbForSize(image, size, preserveRatio, true, NSImageInterpolationHigh, true, false, 1);
}

} // namespace kw
