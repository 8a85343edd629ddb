// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SearchPaths.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// Applications keep their files in the XDG data home. The temporary folder is TMPDIR where that
/// names an absolute folder, else /tmp. Applications lie in ~/Applications and /Applications.
/// Downloads arrive where "user-dirs.dirs" in the XDG config home says (the file of xdg-user-dirs),
/// nowhere in particular where that is the home folder, and in ~/Downloads where it says nothing.
/// Where links lead to such a folder it is there twice, at last as it is written. The environment
/// is read at each call.
class KW_EXPORT XdgSearchPaths final : public SearchPaths {
public:
    explicit XdgSearchPaths(Environment environment = processEnvironment);

    std::optional<std::string> homeFolder() const override;
    std::optional<std::string> applicationSupportFolder() const override;
    std::string temporaryFolder() const override;
    std::vector<std::string> applicationFolders(SearchPathDomain domain) const override;
    std::vector<std::string> downloadsFolders() const override;

private:
    Environment m_environment;
};

} // namespace kw
