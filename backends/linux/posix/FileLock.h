// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/posix/FileDescriptor.h>

#include <string>
#include <system_error>

namespace kw {

/// A file that one holder at a time has locked (flock(2)), among all processes and threads.
class FileLock {
public:
    /// Opens the file, makes an empty one with mode 0600 where there is none, and waits for the
    /// lock. Should the file be moved or removed meanwhile, the one at the path then is locked. A
    /// symbolic link is not followed.
    FileLock(const std::string& path, std::error_code& error);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    int get() const { return m_file.get(); }

private:
    FileDescriptor m_file;
};

} // namespace kw
