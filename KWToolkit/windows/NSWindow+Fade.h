// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

/// Lets the window disappear within half a second and hides it at the end. Its alpha value stays,
/// so that it can be shown again. Does not wait; a window that is owned by a shared pointer is kept
/// until then. `NSWindow::opacity` tells what fades. Main thread.
///
/// Deliberate: fades do not know of each other. Where one is started while another runs, both go
/// on: the one that was started last is seen, and a fade-out hides the window at its own end.
KW_EXPORT void fadeOut(NSWindow& window);

/// Shows the window, quite transparent, and lets it appear within half a second.
KW_EXPORT void fadeIn(NSWindow& window);

} // namespace kw
