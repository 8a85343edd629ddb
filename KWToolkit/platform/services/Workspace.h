// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>
#include <system_error>

namespace kw {

/// The desktop's knowledge of installed applications, and of what its user prefers. Used on any
/// thread.
class KW_EXPORT Workspace {
public:
    virtual ~Workspace();
    /// Where the application with this identifier is installed; nothing for an unknown one.
    virtual std::optional<std::string> applicationPath(const std::string& identifier) = 0;
    /// Hands a URL to the desktop's opener and does not wait for it. False where there is none.
    virtual bool openURL(const std::string& url) = 0;
    /// Moves what has that name in the folder to the Trash, from where the user can take it back.
    /// With an error it is where it was.
    virtual std::error_code moveToTrash(const std::string& folder, const std::string& name) = 0;
    /// Starts a new instance of the application with this identifier, also where one runs, and does
    /// not wait for it. False where that cannot be started.
    virtual bool launchApplication(const std::string& identifier) = 0;
    /// Whether the user asked for less movement on the screen. False where the desktop does not
    /// say. Asked before each animation: what is dear to learn is kept for some seconds, so a
    /// change may be noticed late.
    virtual bool accessibilityDisplayShouldReduceMotion() = 0;
};

/// Knows no application.
class KW_EXPORT UnavailableWorkspace final : public Workspace {
public:
    std::optional<std::string> applicationPath(const std::string&) override { return std::nullopt; }
    bool openURL(const std::string&) override { return false; }
    std::error_code moveToTrash(const std::string&, const std::string&) override;
    bool launchApplication(const std::string&) override { return false; }
    bool accessibilityDisplayShouldReduceMotion() override { return false; }
};

} // namespace kw
