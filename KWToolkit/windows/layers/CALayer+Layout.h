// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Places a layer by constraints, each relative to the sublayer of that name of the same superlayer,
// or to the superlayer itself, which is called "superlayer". Each call adds to the constraints that
// the layer has and removes none. They count once the superlayer has a `CAConstraintLayoutManager`.
// Offsets are in the superlayer's coordinates, y up.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/CALayer.h>

#include <string>

namespace kw {

KW_EXPORT void centerHorizontallyRelativeTo(
    CALayer& layer, const std::string& source, double offset);
KW_EXPORT void centerVerticallyRelativeTo(CALayer& layer, const std::string& source, double offset);
KW_EXPORT void centerVerticallyAndHorizontallyRelativeTo(
    CALayer& layer, const std::string& source, double xOffSet, double yOffSet);
KW_EXPORT void centerVerticallyAndHorizontallyRelativeTo(CALayer& layer, const std::string& source);

// An edge of the layer at the same edge of the source.
KW_EXPORT void anchorTopRelativeTo(CALayer& layer, const std::string& source, double offset);
KW_EXPORT void anchorBottomRelativeTo(CALayer& layer, const std::string& source, double offset);
KW_EXPORT void anchorRightRelativeTo(CALayer& layer, const std::string& source, double offset);
KW_EXPORT void anchorLeftRelativeTo(CALayer& layer, const std::string& source, double offset);

// Beside the source.
KW_EXPORT void stayOnLeftRelativeTo(CALayer& layer, const std::string& source, double offset);
KW_EXPORT void stayOnRightRelativeTo(CALayer& layer, const std::string& source, double offset);

/// Stretches the layer from the superlayer's left edge to its right one, whatever the source is.
/// Both offsets are added, so a distance from the right edge is negative.
KW_EXPORT void centerHorizontallyRelativeTo(
    CALayer& layer, const std::string& source, double leftOffset, double rightOffSet);

} // namespace kw
