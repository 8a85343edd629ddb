// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWActiveApplications.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <utility>

namespace kw {

std::optional<std::vector<RunningApplication>> CopyLaunchedApplicationsInFrontToBackOrder() {
    auto applications = Platform::runningApplications().frontToBack();
    if (applications && applications->empty())
        return std::nullopt;
    return applications;
}

std::optional<std::vector<RunningApplication>> KWActiveApplications::activeApplications() {
    return CopyLaunchedApplicationsInFrontToBackOrder();
}

std::optional<RunningApplication> KWActiveApplications::previousActiveApplication() {
    auto applications = CopyLaunchedApplicationsInFrontToBackOrder();
    if (!applications)
        return std::nullopt;
    const auto host = NSBundle::mainBundle().objectForInfoDictionaryKey("CFBundleName");
    const std::size_t index = applications->front().bundleName == host ? 1 : 0;
    // Deliberate: a host that runs alone is out of range, not nothing.
    if (index >= applications->size())
        throw NSException(NSRangeException, "no application runs but the host");
    return std::move((*applications)[index]);
}

std::optional<std::string> KWActiveApplications::previousActiveApplicationName() {
    const auto path = previousActiveApplicationPath();
    return path ? std::optional(stringByDeletingPathExtension(lastPathComponent(*path)))
                : std::nullopt;
}

std::optional<std::string> KWActiveApplications::previousActiveApplicationPath() {
    auto application = previousActiveApplication();
    if (!application || application->bundlePath.empty())
        return std::nullopt;
    return std::move(application->bundlePath);
}

} // namespace kw
