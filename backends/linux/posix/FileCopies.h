// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What files hold and what they are, from one open file to another.
#pragma once

#include <backends/linux/posix/FileDescriptor.h>

#include <sys/stat.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace kw {

/// How the names of the attributes begin that hold access lists.
inline constexpr std::string_view accessListAttributes = "system.posix_acl_";

/// Whether it is no failure that a mode, an attribute, an owner or a hard link could not be set.
inline bool isOptional(int error) { return error == ENOTSUP || error == EPERM || error == EINVAL; }

/// As utimensat takes them.
inline std::array<timespec, 2> timesOf(const struct stat& status) {
    return {status.st_atim, status.st_mtim};
}

/// Makes an open file or folder, whose content is complete, what the original is.
std::error_code copyAttributes(int from, const struct stat& original, int to);

/// Copies files on a few threads, while the caller opens more. Used by one thread.
class FileCopies {
public:
    struct File {
        FileDescriptor from;
        struct stat original;
        FileDescriptor to; ///< empty
    };

    FileCopies() = default;
    /// Leaves out what has not begun.
    ~FileCopies();
    FileCopies(const FileCopies&) = delete;
    FileCopies& operator=(const FileCopies&) = delete;

    /// Waits where many files do. The error is that of one before.
    std::error_code add(File file);
    /// Waits until all is copied, as well as it goes.
    std::error_code finish();

private:
    void work();
    void startThread();
    std::error_code copy(File& file);

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::deque<File> m_waiting;
    std::error_code m_error;
    std::size_t m_underWay = 0;
    bool m_isEnding = false;
    // Of the adding thread.
    std::vector<std::thread> m_threads;

    std::atomic<bool> m_canClone = true;
};

} // namespace kw
