// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <QImage>

namespace kw::qt {

/// The picture in the layout that its format has, else in one that loses none of its depth. Pixels
/// are shared and not copied where there is such a layout; a picture around memory of the caller's
/// own has to be copied first if that memory changes or goes. The ratio of its pixels to points and
/// its color space get lost. Null for a null picture, or where memory is short. Any thread.
KW_EXPORT CGImageRef imageFromQImage(const QImage& image);

/// The same way back. Gray with alpha becomes RGB, and so does CMYK, as drawing shows it.
KW_EXPORT QImage toQImage(const CGImageRef& image);

} // namespace kw::qt
