// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/imaging/KWScaledImage.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <memory>
#include <string>

namespace kw {

/// A picture file within a box of pixels: upright, as its orientation tag says, of any depth, and
/// read no larger than needed where the format allows. With `preserveRatio` it is made as large as
/// the box allows, but no larger than it is; else it fills the box. With `keepSquareRect` the
/// result has the box's size and the picture is in its middle. The rest is as in
/// NSBitmapImageRep+Thumb.h. Null where the file cannot be decoded. Any thread.
KW_EXPORT std::shared_ptr<NSBitmapImageRep> thumbFromFile(const std::string& path, NSSize box,
    bool preserveRatio = true, bool keepSquareRect = false,
    NSImageInterpolation imageInterpolation = NSImageInterpolationHigh, bool shouldAntialias = true,
    bool correctWithColorProfile = false, float alpha = 1);

} // namespace kw
