// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The desktop entries that are installed for the user.
#pragma once

#include <backends/linux/posix/Environment.h>
#include <backends/linux/xdg/ApplicationFolder.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kw {

/// The folders "applications" of the XDG data home and data folders, best first.
std::vector<std::filesystem::path> applicationsFolders(const Environment& environment);

/// Whether there can be a desktop entry with this identifier.
bool isEntryIdentifier(const std::string& identifier);

/// The entry "a/b.desktop" below one of the folders is "a-b". The first there is decides: nothing
/// where that has Hidden=true.
std::optional<DesktopFile> installedEntry(
    const std::vector<std::filesystem::path>& folders, const std::string& identifier);

/// All entries but hidden ones, the best folder's first, each folder's by path. Takes a while.
std::vector<DesktopFile> installedEntries(const std::vector<std::filesystem::path>& folders);

/// The entry of the program whose windows have this instance and class (WM_CLASS): the first by
/// StartupWMClass, else by identifier; the instance tells more than the class. Upper and lower case
/// are the same only where nothing else fits. Null where there is none.
const DesktopFile* entryOfWindows(const std::vector<DesktopFile>& entries,
    const std::string& instance, const std::string& windowClass);

} // namespace kw
