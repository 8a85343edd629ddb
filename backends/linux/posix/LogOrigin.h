// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <ctime>
#include <string_view>

#include <sys/types.h>

namespace kw {

/// When, where and by whom a message is logged, as texts of fixed length.
struct LogOrigin {
    std::time_t second = -1;
    pid_t process = -1;
    std::array<char, 16> syslogTime; ///< "Nov 23 02:10:33", local (RFC 3164)
    std::array<char, 20> time; ///< "2026-11-23T02:10:33", local (RFC 3339)
    std::array<char, 7> zone; ///< "+01:00"
    std::array<char, 12> processText;
    std::array<char, 65> host;
};

/// The origin of what is logged now on this thread, valid until the thread asks again. Made anew
/// once a second, so a message costs no system call here. Works in a forked child.
const LogOrigin& logOrigin(std::time_t now);

} // namespace kw
