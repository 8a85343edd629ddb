// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/NSPanel+Fade.h>

#include <KWToolkit/windows/NSWindow+Fade.h>

namespace kw {

void fadeOut(NSPanel& panel) { fadeOut(static_cast<NSWindow&>(panel)); }
void fadeIn(NSPanel& panel) { fadeIn(static_cast<NSWindow&>(panel)); }

} // namespace kw
