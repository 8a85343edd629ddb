// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>
#include <vector>

namespace kw {

enum class SearchPathDomain {
    user, ///< what is the user's own
    local, ///< what all users of the machine share
};

/// Where things are kept. Absolute paths without a slash at the end; whether something is there is
/// another matter. Used on any thread.
class KW_EXPORT SearchPaths {
public:
    virtual ~SearchPaths();
    virtual std::optional<std::string> homeFolder() const = 0;
    /// Where the user's applications keep their files.
    virtual std::optional<std::string> applicationSupportFolder() const = 0;
    virtual std::string temporaryFolder() const = 0;
    virtual std::vector<std::string> applicationFolders(SearchPathDomain domain) const = 0;
    /// Where the user's downloads arrive.
    virtual std::vector<std::string> downloadsFolders() const = 0;
};

/// A temporary folder is all there is.
class KW_EXPORT StandardSearchPaths final : public SearchPaths {
public:
    std::optional<std::string> homeFolder() const override { return std::nullopt; }
    std::optional<std::string> applicationSupportFolder() const override { return std::nullopt; }
    std::string temporaryFolder() const override;
    std::vector<std::string> applicationFolders(SearchPathDomain) const override { return {}; }
    std::vector<std::string> downloadsFolders() const override { return {}; }
};

} // namespace kw
