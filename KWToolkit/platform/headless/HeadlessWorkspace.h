// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Workspace.h>

#include <map>
#include <vector>

namespace kw {

/// Knows the applications that a test says.
class KW_EXPORT HeadlessWorkspace final : public Workspace {
public:
    std::optional<std::string> applicationPath(const std::string& identifier) override {
        const auto found = applications.find(identifier);
        return found == applications.end() ? std::nullopt : std::optional(found->second);
    }

    bool openURL(const std::string& url) override {
        openedURLs.push_back(url);
        return true;
    }

    std::map<std::string, std::string> applications; ///< identifier to path
    std::vector<std::string> openedURLs;
};

} // namespace kw
