// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kw {

/// In the numbering of syslog (RFC 5424, table 2).
enum class SystemLogLevel { emergency, alert, critical, error, warning, notice, info, debug };

/// One sender's connection to the system log, which its destructor ends.
///
/// Messages are logged from any thread, from several at once, and in a forked child. The files may
/// change only while no message is being logged.
class KW_EXPORT SystemLogClient {
public:
    virtual ~SystemLogClient();

    /// Sends a message, UTF-8, and writes it to each file as one line. Never waits for a reader.
    virtual void log(SystemLogLevel level, std::string_view message) = 0;

    /// From now on messages are written to this file as well. The descriptor stays the caller's;
    /// `path` is what it was opened from, so that a file put in its place is noticed.
    virtual void addLogFile(int descriptor, const std::string& path) = 0;
    /// A file that was not added is ignored.
    virtual void removeLogFile(int descriptor) = 0;

    /// How many messages did not reach the system log: there was none, it did not take them fast
    /// enough, or they were too long for it.
    virtual std::uint64_t unsentMessageCount() const = 0;
};

/// The system log, and the files that messages are mirrored into. Used on any thread.
class KW_EXPORT SystemLog {
public:
    virtual ~SystemLog();

    /// Never null. Connects at once or with the first message. A sender without a name has the
    /// program's; a facility is one of syslog's ("daemon", "local0") or a name of the host's own,
    /// which a log that knows only syslog's files under "user".
    virtual std::unique_ptr<SystemLogClient> open(
        const std::string& sender, const std::string& facility, bool connectImmediately) = 0;

    /// Opens a file for appending, made with permission bits 0646 (less the process's mask) where
    /// there is none. A descriptor, which the caller gives back with `closeFile`, or -1.
    virtual int openFile(const std::string& path) = 0;
    virtual void closeFile(int descriptor) = 0;
};

/// Takes no messages and says so.
class KW_EXPORT UnavailableSystemLog final : public SystemLog {
public:
    std::unique_ptr<SystemLogClient> open(const std::string&, const std::string&, bool) override;
    int openFile(const std::string&) override { return -1; }
    void closeFile(int) override { }
};

} // namespace kw
