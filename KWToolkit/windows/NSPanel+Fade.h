// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSPanel.h>

namespace kw {

/// What they do to any window: see NSWindow+Fade.h.
KW_EXPORT void fadeOut(NSPanel& panel);
KW_EXPORT void fadeIn(NSPanel& panel);

} // namespace kw
