// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>

#include <array>
#include <cstdint>

namespace kw {

/// What each channel value becomes, in units of 1/32768: 32768 is full intensity.
using GammaTable = std::array<std::uint32_t, 256>;

/// Changes each pixel's colors, in place and whatever its opacity: by the table where there is one,
/// else to the power of `value` (above 1 darkens, below 1 lightens). Nothing happens for a value of
/// 0 without a table, nor to a bitmap that is not RGB.
///
/// Made for premultiplied RGBA with 8 bits each. Other layouts are read as if they were that, with
/// a quarter of the pixel's bits for each channel. Where a pixel's first byte is found by its index
/// in single precision, as here, the bytes that are read are not the pixel's own from index
/// 4,194,304 on (at 32 bits a pixel); a byte beyond the end of the bitmap counts as 0. Colors that
/// exceed their alpha have no place in the table and take its nearer end. Throws `std::bad_alloc`
/// where pixels that an image shares cannot be copied.
KW_EXPORT void adjustGammaWithValue(NSBitmapImageRep& bitmap, float value, const GammaTable* table);
KW_EXPORT void adjustGammaWithValue(NSBitmapImageRep& bitmap, float value);
KW_EXPORT void adjustGammaWithArray(NSBitmapImageRep& bitmap, const GammaTable* table);

} // namespace kw
