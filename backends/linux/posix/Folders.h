// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Folders by descriptor, which stay the same when what leads to them is moved or replaced.
#pragma once

#include <backends/linux/posix/FileDescriptor.h>

#include <string>
#include <system_error>
#include <vector>

namespace kw {

/// -1 and errno where it is no folder; the empty path is the current folder.
FileDescriptor openFolder(const std::string& path);

/// Opens what has that name in a folder and is a folder itself, not a symbolic link to one.
FileDescriptor openFolderIn(int folder, const char* name);

/// Brings a file or a folder onto the disk.
std::error_code syncToDisk(int descriptor);

/// The same; some file systems have nothing to sync in a folder.
std::error_code syncFolder(int descriptor);

/// What is in a folder, without "." and "..". With an error what could be read.
std::vector<std::string> namesIn(int folder, std::error_code& error);

/// Gives an entry another name, which nothing has: errc::file_exists else, also for a symbolic link
/// that leads nowhere.
std::error_code moveWithoutReplacing(
    int folder, const char* name, int newFolder, const char* newName);

} // namespace kw
