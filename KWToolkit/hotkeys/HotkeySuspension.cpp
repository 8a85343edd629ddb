// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/HotkeySuspension.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

namespace {

int suspensionCount = 0;

} // namespace

HotkeySuspension::HotkeySuspension() {
    if (suspensionCount++ == 0)
        Platform::hotkeys().setSuspended(true);
}

HotkeySuspension::~HotkeySuspension() {
    if (--suspensionCount == 0)
        Platform::hotkeys().setSuspended(false);
}

} // namespace kw
