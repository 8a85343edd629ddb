// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>

namespace kw {

/// Tells a host after a restart that it crashed, so that it can offer to send the report.
class KW_EXPORT KWCrashLogFinder {
public:
    KWCrashLogFinder() = delete;

    /// The newest crash report of the host's program in ~/Library/Logs/CrashReporter/, each only
    /// once: its name is kept in the user defaults under "KWLastCrashLogName", and while it stays
    /// the newest the answer is nothing. Older reports are never handed out.
    ///
    /// On Linux `installCrashReportWriter` lets the host write such reports.
    static std::optional<std::string> lastCrashReportPath();
};

} // namespace kw
