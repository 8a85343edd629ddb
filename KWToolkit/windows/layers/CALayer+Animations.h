// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/CALayer.h>

namespace kw {

/// Switches off what a layer does by default when it is rebuilt or moved: replaces its table of
/// actions by one with the null object for eleven keys, so that its contents, bounds, position and
/// its background's and border's color change at once. What else can be animated still is, and so
/// are its sublayers; an animation that runs already goes on.
KW_EXPORT void removeAllImplicitAnimations(CALayer& layer);

} // namespace kw
