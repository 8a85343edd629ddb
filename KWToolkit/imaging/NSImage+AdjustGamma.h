// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSImage.h>

namespace kw {

/// Sends the message of the same name to each of the image's representations, in order. Throws an
/// `NSException` named "NSInvalidArgumentException" at the first one that has no such method, as
/// only bitmaps have one; those before it are changed by then.
KW_EXPORT void adjustGammaWithValue(NSImage& image, float value);
KW_EXPORT void adjustGammaWithArray(NSImage& image, const GammaTable* table);

} // namespace kw
