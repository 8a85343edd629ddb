// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>

namespace kw {

/// Where the host keeps its files, and where other applications are.
class KW_EXPORT KWPathUtils {
public:
    KWPathUtils() = delete;

    /// The host's folder among the user's application support folders (on Linux
    /// $XDG_DATA_HOME/<name>), or among the temporary files where the user has none. Not made.
    static std::string applicationSupportFolder();
    /// Makes that folder where nothing is at its path, but not the folders above it. The path in
    /// any case, also where that fails or where a file is in the way.
    static std::string createApplicationSupportFolder();
    /// Where the application with this identifier is installed.
    static std::optional<std::string> applicationPathForBundleID(const std::string& bundleID);
};

} // namespace kw
