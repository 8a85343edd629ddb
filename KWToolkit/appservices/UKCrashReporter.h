// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>

namespace kw {

/// The newest crash report of an application in a folder: what is named "<name>_….crash" there, by
/// modification date; of several with the same date the first that the folder lists. Nothing where
/// there is none, or no such folder.
///
/// Only the path relative to the folder is compared, so what lies in a subfolder counts where the
/// subfolder's name begins like a report's, and a folder that is named like a report is one.
KW_EXPORT std::optional<std::string> UKCrashReporterFindTenFiveCrashReportPath(
    const std::string& appName, const std::string& crashLogsFolder);

} // namespace kw
