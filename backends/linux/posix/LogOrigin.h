// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <ctime>
#include <string_view>

#include <sys/types.h>

namespace kw {

/// When, where and by whom a message is logged: texts that are the same for a second.
struct LogOrigin {
    template <std::size_t capacity>
    struct Text {
        std::array<char, capacity> bytes;
        std::size_t size = 0;
        operator std::string_view() const { return {bytes.data(), size}; }
    };

    std::time_t second = -1;
    pid_t process = -1;
    Text<15> syslogTime; ///< "Nov 23 02:10:33", local (RFC 3164)
    Text<19> time; ///< "2026-11-23T02:10:33", local (RFC 3339)
    Text<6> zone; ///< "+01:00"
    Text<12> bracketedProcess; ///< "[1234]"
    Text<64> host;
};

/// The origin of what is logged now on this thread, valid until the thread asks again. Made anew
/// once a second, so a message costs no system call here. Works in a forked child.
const LogOrigin& logOrigin(std::time_t now);

} // namespace kw
