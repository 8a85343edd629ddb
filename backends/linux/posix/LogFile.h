// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/posix/Lookout.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace kw {

/// A file that lines are appended to, by several threads and processes at once.
class LogFile {
public:
    /// Opens a file as `LogFile` needs it. A descriptor, or -1.
    static int open(const std::string& path);

    /// Writes to a duplicate of the descriptor, which stays the caller's: once that is closed, its
    /// number may stand for something else.
    LogFile(int descriptor, const std::string& path);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    int descriptor() const { return m_descriptor; }

    /// Appends a line, which ends with an end of line, in one piece. Where another file is at the
    /// path by now, it becomes this one, and where none is, it is made; `Lookout` says how soon
    /// that is noticed. `now` is the time of day in nanoseconds.
    void append(std::string_view line, std::int64_t now);

private:
    void followPath();
    void rememberFile();
    bool isRemembered(const struct stat& status) const;

    const int m_descriptor; ///< the caller's
    std::atomic<int> m_duplicate;
    const std::string m_path; ///< absolute
    Lookout m_lookout;
    std::atomic<dev_t> m_device = 0;
    std::atomic<ino_t> m_inode = 0;
    std::atomic<bool> m_isTorn = false; ///< the last line is not whole: the disk was full
};

} // namespace kw
