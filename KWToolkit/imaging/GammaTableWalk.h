// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/imaging/GammaWalk.h>

namespace kw {

/// Does what the walk does, by tables and row by row, for large bitmaps of 8 bits a component.
/// False, with nothing done, where it is not made for a bitmap.
bool walkByTables(NSBitmapImageRep& bitmap, const GammaAdjustment& adjusted);

} // namespace kw
