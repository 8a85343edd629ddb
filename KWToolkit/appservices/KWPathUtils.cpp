// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWPathUtils.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

namespace kw {

std::string KWPathUtils::applicationSupportFolder() {
    const SearchPaths& paths = Platform::searchPaths();
    const auto name = NSBundle::mainBundle().objectForInfoDictionaryKey("CFBundleName");
    return stringByAppendingPathComponent(
        paths.applicationSupportFolder().value_or(paths.temporaryFolder()),
        name.value_or(std::string()));
}

std::string KWPathUtils::createApplicationSupportFolder() {
    std::string folder = applicationSupportFolder();
    FileSystem& files = Platform::fileSystem();
    if (!files.fileExists(folder))
        files.createDirectory(folder);
    return folder;
}

std::optional<std::string> KWPathUtils::applicationPathForBundleID(const std::string& bundleID) {
    return Platform::workspace().applicationPath(bundleID);
}

} // namespace kw
