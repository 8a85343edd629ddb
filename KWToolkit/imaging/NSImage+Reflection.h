// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSImage.h>

#include <memory>

namespace kw {

/// A fading mirror image, to be shown beneath the picture: of the same size, flipped, transparent
/// but for a band of `amount` times the height. In it the picture stands on its head, and its
/// opacity grows along y from 0 over 0.2 in the middle to 0.5. The band begins at y = 0, and that
/// of a flipped image where a band of the same height would end.
///
/// Has the pixels of the image's finest bitmap; empty where the image has none. An amount that is
/// no number, or below 0, gives an empty band.
KW_EXPORT std::shared_ptr<NSImage> reflectedImageWithAmountReflected(
    const NSImage& image, float amount);

} // namespace kw
