// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/posix/Lookout.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace kw {

/// A file that lines are appended to, by several threads and processes at once.
class LogFile {
public:
    /// Opens a file as `LogFile` needs it. A descriptor, or -1.
    static int open(const std::string& path);

    /// The descriptor stays the caller's, and keeps its number also when the file changes.
    LogFile(int descriptor, const std::string& path);

    int descriptor() const { return m_descriptor; }

    /// Appends a line, which ends with an end of line, in one piece. Where another file is at the
    /// path by now, it becomes this one, and where none is, it is made; `Lookout` says how soon
    /// that is noticed. `now` is the time of day in nanoseconds.
    void append(std::string_view line, std::int64_t now);

private:
    void followPath(std::int64_t now);
    void rememberFile();

    const int m_descriptor;
    const std::string m_path; ///< absolute
    Lookout m_lookout;
    std::atomic<dev_t> m_device = 0;
    std::atomic<ino_t> m_inode = 0;
    std::atomic<bool> m_isTorn = false; ///< the last line is not whole: the disk was full
};

} // namespace kw
