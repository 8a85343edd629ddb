// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Outlines of custom controls.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSBezierPath.h>

namespace kw {

/// A rectangle with four rounded corners, inset by half the border and snapped to the pixel grid so
/// that a stroke of that width falls on whole pixels. The radius is not clamped.
KW_EXPORT NSBezierPath roundBezierPath(NSRect rect, float angleRadius, float border);

/// The same with only the corners at the larger y rounded: the lower ones of a flipped view.
KW_EXPORT NSBezierPath halfBottomRoundBezierPath(NSRect rect, float angleRadius, float border);

/// The same with only the corners at the smaller y rounded: the upper ones of a flipped view.
KW_EXPORT NSBezierPath halfTopRoundBezierPath(NSRect rect, float angleRadius, float border);

/// `rect` moved so that its center is that of `inRect`, without rounding.
KW_EXPORT NSRect centerRectInRect(const NSRect& rect, const NSRect& inRect);

} // namespace kw
