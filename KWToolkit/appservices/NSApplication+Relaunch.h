// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// Terminates the host and starts it again: the new instance is started, by the host's identifier,
/// when the application is told that it is about to end. Where the termination is refused the host
/// just goes on. That the new instance could not be started is not told. Main thread.
KW_EXPORT void relaunchApp();

} // namespace kw
