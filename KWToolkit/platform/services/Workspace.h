// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>

namespace kw {

/// The desktop's knowledge of installed applications. Used on any thread.
class KW_EXPORT Workspace {
public:
    virtual ~Workspace();
    /// Where the application with this identifier is installed; nothing for an unknown one.
    virtual std::optional<std::string> applicationPath(const std::string& identifier) = 0;
    /// Hands a URL to the desktop's opener and does not wait for it. False where there is none.
    virtual bool openURL(const std::string& url) = 0;
};

/// Knows no application.
class KW_EXPORT UnavailableWorkspace final : public Workspace {
public:
    std::optional<std::string> applicationPath(const std::string&) override { return std::nullopt; }
    bool openURL(const std::string&) override { return false; }
};

} // namespace kw
