// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSImage+BestRepresentationForSize.h>

#include <KWToolkit/platform/foundation/NSException.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kw {

namespace {

/// How far a representation is from a size. The ratios are deliberately those of single precision.
double score(const NSImageRep& representation, NSSize wanted) {
    const NSSize size = representation.size();
    const auto widthRatio = static_cast<float>(size.width / wanted.width);
    const auto heightRatio = static_cast<float>(size.height / wanted.height);
    return static_cast<double>(std::fabs(1.0F - widthRatio))
        + static_cast<double>(std::fabs(1.0F - heightRatio));
}

} // namespace

std::shared_ptr<NSImageRep> bestRepresentationForSize(const NSImage& image, NSSize size) {
    const auto& representations = image.representations();
    if (representations.empty())
        return nullptr;
    if (representations.size() == 1)
        return representations.front();

    // Deliberate: the best score is kept in single precision and compared with one in double, so
    // that a later equal one wins where it was rounded up.
    float best = 666;
    std::int64_t bestIndex = 0;
    image.enumerateRepresentations([&](const std::shared_ptr<NSImageRep>& representation) {
        const double candidate = score(*representation, size);
        if (static_cast<double>(best) > candidate) {
            best = static_cast<float>(candidate);
            bestIndex =
                std::ranges::find(representations, representation) - representations.begin();
        }
    });
    const auto index = static_cast<std::size_t>(static_cast<std::int32_t>(bestIndex));
    if (index >= representations.size())
        throw NSException(NSRangeException, "*** The list of representations was emptied.");
    return representations[index];
}

} // namespace kw
