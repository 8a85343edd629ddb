// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGColor.h>
#include <KWToolkit/platform/graphics/NSColor.h>

#include <optional>

namespace kw {

/// The same color for layers and contexts; from version 1187 of the application framework on just
/// what `NSColor::CGColor` gives. Below, an image becomes a pattern that borrows the image's
/// pixels: it must not be used once the image is gone or changed. Empty for an image without
/// bitmaps.
KW_EXPORT std::optional<CGColor> kwCGColor(const NSColor& color);

/// The pattern's callbacks. `info` is the `CGImage` that is drawn, a pixel a point, at (0, 0).
KW_EXPORT void drawPatternImage(void* info, NSGraphicsContext& context);
/// Does nothing, deliberately: the image is borrowed.
KW_EXPORT void releasePatternImage(void* info);

} // namespace kw
