// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SystemLog.h>

#include <string>

namespace kw {

/// The log of a Linux system: the journal, by its native protocol
/// (systemd.io/JOURNAL_NATIVE_PROTOCOL), where its socket exists; else the daemon that reads
/// /dev/log (RFC 3164, without the host, as the C library's syslog writes); else nobody. A daemon
/// that was restarted is found again.
///
/// In the journal the sender is SYSLOG_IDENTIFIER, the facility SYSLOG_FACILITY, or KW_FACILITY
/// where it is not one of syslog's. In /dev/log the sender is the tag, with "_" for blanks, colons
/// and brackets.
///
/// A line of a mirror file:
///
///     2026-11-23T02:10:33.123456+01:00 host sender[1234] <Warning>: text
///
/// Control characters are written as \n, \t, \r and \x1b.
class KW_EXPORT PosixSystemLog final : public SystemLog {
public:
    struct Sockets {
        std::string journal = "/run/systemd/journal/socket";
        std::string syslog = "/dev/log";
    };
    PosixSystemLog() = default;
    explicit PosixSystemLog(Sockets sockets)
        : m_sockets(std::move(sockets)) { }

    std::unique_ptr<SystemLogClient> open(
        const std::string& sender, const std::string& facility, bool connectImmediately) override;
    int openFile(const std::string& path) override;
    void closeFile(int descriptor) override;

private:
    Sockets m_sockets;
};

} // namespace kw
