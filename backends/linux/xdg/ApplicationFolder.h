// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What tells an application's program, its folder "Name.app" and its desktop entry from one
// another.
#pragma once

#include <backends/linux/xdg/DesktopEntry.h>

#include <filesystem>
#include <optional>
#include <string>

namespace kw {

/// Whether it is a folder's name with ".app" at the end.
bool isApplicationFolderName(const std::filesystem::path& name);

/// The nearest folder above the program that is named "Name.app".
std::optional<std::filesystem::path> applicationFolderAbove(const std::filesystem::path& program);

struct DesktopFile {
    std::string identifier; ///< the file's name without ".desktop"
    DesktopEntry entry;
};

std::optional<DesktopFile> readDesktopFile(const std::filesystem::path& path);

/// The desktop entry in the folder. Of several the one that starts a program with this file name,
/// else the first by name.
std::optional<DesktopFile> desktopFileIn(
    const std::filesystem::path& folder, const std::string& programName);

/// The program that the entry starts, as it is written: a path, or a name to be looked for in PATH.
/// What "env" starts counts, not "env". Empty where there is none.
std::string programOf(const DesktopEntry& entry);

/// Whether it is a file that this user can execute.
bool isProgram(const std::filesystem::path& path);

/// A program, given by its absolute path or by its name, which is looked for in the folders of
/// PATH.
std::optional<std::filesystem::path> findProgram(
    const std::string& program, const std::string& searchPath);

/// The application that the entry starts: its program, found so, or the folder "Name.app" in which
/// that lies. Nothing where it cannot be executed.
std::optional<std::string> applicationOf(const DesktopEntry& entry, const std::string& searchPath);

} // namespace kw
