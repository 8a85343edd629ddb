// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/UKCrashReporter.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <utility>

namespace kw {

std::optional<std::string> UKCrashReporterFindTenFiveCrashReportPath(
    const std::string& appName, const std::string& crashLogsFolder) {
    const std::string prefix = appName + "_";
    std::optional<FileEntry> newest;
    for (FileEntry& entry : Platform::fileSystem().enumerate(crashLogsFolder)) {
        if (!entry.relativePath.starts_with(prefix) || !entry.relativePath.ends_with(".crash"))
            continue;
        if (!newest || entry.modificationDate > newest->modificationDate)
            newest = std::move(entry);
    }
    if (!newest)
        return std::nullopt;
    return stringByAppendingPathComponent(crashLogsFolder, newest->relativePath);
}

} // namespace kw
