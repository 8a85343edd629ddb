// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The controller of any view.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkit/platform/ui/NSViewController.h>

namespace kw {

/// Tells a view who controls it. The controller is not owned, and must take itself back (null)
/// before it dies; a `KWViewController` does. A `KWControlledView` also puts it into the responder
/// chain.
KW_EXPORT void setViewController(NSView& view, NSViewController* controller);
/// Null if there is none.
KW_EXPORT NSViewController* viewController(const NSView& view);

} // namespace kw
