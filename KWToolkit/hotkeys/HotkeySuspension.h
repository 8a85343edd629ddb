// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// Suspends the process's system-wide hotkeys while it lives, so that their keys reach the focused
/// window like any others. Suspensions may overlap. Main thread.
class KW_EXPORT HotkeySuspension {
public:
    HotkeySuspension();
    ~HotkeySuspension();
    HotkeySuspension(const HotkeySuspension&) = delete;
    HotkeySuspension& operator=(const HotkeySuspension&) = delete;
};

} // namespace kw
