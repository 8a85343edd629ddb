// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

/// Gives the window's content another size, while its upper left corner stays: the frame may grow
/// beyond the screen's lower edge. Main thread.
///
/// The size is confined to the window's limits; a largest size below the smallest counts. Then it
/// is narrowed to single precision. Deliberate: the limits are those of the frame, so the frame can
/// become larger than they say by its decoration.
KW_EXPORT void resizeWindowToSize(NSWindow& window, NSSize size, bool animate = false);

} // namespace kw
