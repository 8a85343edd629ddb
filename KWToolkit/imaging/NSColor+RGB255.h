// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSColor.h>

namespace kw {

/// A calibrated color. Red, green and blue run from 0 to 255 and alpha, deliberately, from 0 to 1.
KW_EXPORT NSColor colorWith255Red(float red, float green, float blue, float alpha);

} // namespace kw
