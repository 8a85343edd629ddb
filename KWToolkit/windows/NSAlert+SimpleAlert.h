// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>

namespace kw {

/// Warns the user with an alert that has one button, and waits until it is dismissed. Main thread.
KW_EXPORT void simpleWarningAlertWithTitle(
    const std::string& title, const std::string& text, const std::string& buttonText);

} // namespace kw
