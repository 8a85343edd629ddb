// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What the gallery asks the desktop for. One source file or another defines it.
#pragma once

#include "Hands.h"

#include <memory>

namespace gallery {

/// Whether there is a display to show windows on.
bool hasDisplay();

/// Hands on the display's own mouse and keyboard; null where there are none to be had.
std::unique_ptr<Hands> realHands();

/// From now on a crash leaves a report. Whether it does.
bool writeCrashReports();

} // namespace gallery
