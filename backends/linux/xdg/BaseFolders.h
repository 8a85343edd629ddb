// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <backends/linux/posix/Environment.h>

#include <optional>
#include <string>
#include <vector>

namespace kw {

/// The user's folders as the XDG Base Directory Specification has them: absolute, without a slash
/// at the end. A variable that holds a relative path counts as not set.
struct BaseFolders {
    std::optional<std::string> home; ///< of HOME, else of the password database
    std::optional<std::string> configHome; ///< nothing where there is no home
    std::optional<std::string> dataHome; ///< nothing where there is no home
    std::optional<std::string> cacheHome; ///< nothing where there is no home
    std::vector<std::string> configFolders; ///< after the config home, best first
    std::vector<std::string> dataFolders; ///< after the data home, best first
};

KW_EXPORT BaseFolders baseFolders(const Environment& environment = processEnvironment);

/// The absolute paths of a list with colons in between, without slashes at the end.
KW_EXPORT std::vector<std::string> absolutePaths(const std::string& list);

} // namespace kw
