// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSImage.h>

#include <memory>

namespace kw {

/// The representation whose size in points is closest to `size`: the one for which the width's and
/// the height's relative deviations add up to the least. Of several that are equally close
/// the first, but for single precision: it keeps the least sum, and where it rounded that up a
/// later one of the same counts as closer. The first of all where none deviates less than 666. Null
/// without any. Throws where the list changes meanwhile, see `NSImage::enumerateRepresentations`.
KW_EXPORT std::shared_ptr<NSImageRep> bestRepresentationForSize(const NSImage& image, NSSize size);

} // namespace kw
