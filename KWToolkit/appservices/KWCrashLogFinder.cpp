// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWCrashLogFinder.h>

#include <KWToolkit/appservices/UKCrashReporter.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <KWToolkit/platform/foundation/NSUserDefaults.h>

#include <tuple>

namespace kw {

std::optional<std::string> KWCrashLogFinder::lastCrashReportPath() {
    constexpr const char* lastNameKey = "KWLastCrashLogName";
    const auto executable = NSBundle::mainBundle().objectForInfoDictionaryKey("CFBundleExecutable");
    auto path = UKCrashReporterFindTenFiveCrashReportPath(executable.value_or(std::string()),
        stringByExpandingTildeInPath("~/Library/Logs/CrashReporter/"));
    if (!path)
        return std::nullopt;
    const std::string name = lastPathComponent(*path);
    NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    if (defaults.stringForKey(lastNameKey) == name)
        return std::nullopt;
    // A report whose name cannot be kept is handed out all the same, and again.
    std::ignore = defaults.setObject(name, lastNameKey);
    return path;
}

} // namespace kw
