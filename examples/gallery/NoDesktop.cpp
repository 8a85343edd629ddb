// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "Desktop.h"

#include <QtGlobal>

namespace gallery {

bool hasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

std::unique_ptr<Hands> realHands() { return nullptr; }

bool writeCrashReports() { return false; }

} // namespace gallery
