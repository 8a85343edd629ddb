// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Workspace.h>

#include <functional>
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

    std::error_code moveToTrash(const std::string& folder, const std::string& name) override {
        if (!trashing)
            return std::make_error_code(std::errc::operation_not_permitted);
        return trashing(folder, name);
    }

    bool launchApplication(const std::string& identifier) override {
        launchedApplications.push_back(identifier);
        return true;
    }

    bool accessibilityDisplayShouldReduceMotion() override { return reducesMotion; }

    std::map<std::string, std::string> applications; ///< identifier to path
    std::vector<std::string> openedURLs;
    std::vector<std::string> launchedApplications; ///< identifiers
    bool reducesMotion = false;
    /// Moves to the Trash; where it is empty nothing can be moved.
    std::function<std::error_code(const std::string& folder, const std::string& name)> trashing;
};

} // namespace kw
