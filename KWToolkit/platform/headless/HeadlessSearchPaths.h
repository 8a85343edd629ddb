// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SearchPaths.h>

namespace kw {

/// Folders that are where a test says.
class KW_EXPORT HeadlessSearchPaths final : public SearchPaths {
public:
    std::optional<std::string> homeFolder() const override { return home; }
    std::optional<std::string> applicationSupportFolder() const override { return support; }
    std::string temporaryFolder() const override { return temporary; }
    std::vector<std::string> applicationFolders(SearchPathDomain domain) const override {
        return domain == SearchPathDomain::user ? userApplications : localApplications;
    }
    std::vector<std::string> downloadsFolders() const override { return downloads; }

    std::optional<std::string> home = "/home/user";
    std::optional<std::string> support = "/home/user/Support";
    std::string temporary = "/tmp";
    std::vector<std::string> userApplications = {"/home/user/Applications"};
    std::vector<std::string> localApplications = {"/Applications"};
    std::vector<std::string> downloads = {"/home/user/Downloads"};
};

} // namespace kw
