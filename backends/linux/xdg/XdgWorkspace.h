// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Workspace.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// Finds an application by the name of its desktop entry without ".desktop":
///
/// 1. The folders "Name.app" in ~/Applications and then in /Applications, by name, whose desktop
///    entry it is: at the top of the folder, or beside a program up to two folders below.
/// 2. The desktop entries in "applications" of the XDG data home and data folders, where the entry
///    "a/b.desktop" is "a-b". The first there is decides, so one with Hidden=true hides others. The
///    answer is the program that its TryExec, else its Exec starts, looked for in PATH, or the
///    folder "Name.app" in which that lies; nothing where it cannot be executed.
class KW_EXPORT XdgWorkspace : public Workspace {
public:
    explicit XdgWorkspace(Environment environment = processEnvironment,
        std::string sharedApplications = "/Applications");

    std::optional<std::string> applicationPath(const std::string& identifier) override;
    /// With xdg-open, which is not waited for.
    bool openURL(const std::string& url) override;
    /// See kw::moveToTrash.
    std::error_code moveToTrash(const std::string& folder, const std::string& name) override;
    /// The main bundle's identifier starts the main bundle. What is found is started as
    /// folderWithOpenProgram tells; that the program then ends at once is not noticed.
    bool launchApplication(const std::string& identifier) override;
    /// Reads the settings of KDE's and of GTK's programs, three small files, at each call.
    bool accessibilityDisplayShouldReduceMotion() override;

private:
    Environment m_environment;
    std::string m_sharedApplications;
};

} // namespace kw
