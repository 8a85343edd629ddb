// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/logging/GDASLLogManager.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/services/SystemLog.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kw {

/// A channel to the system log: one sender name, one facility, eight levels, and a file that gets a
/// copy of each message. On Linux the log is the journal, else whoever reads /dev/log.
///
///     kw::GDASLLog log("Player", "org.example.Player", /*connectImmediately*/ true);
///     log.warning("no sound card");
///
/// A message is a format string without arguments: "%%" logs one percent sign, any other conversion
/// is logged as it stands. `messageFromText` doubles the percent signs of text from elsewhere.
///
/// Levels may be used on any thread, several at once, and in a forked child; they never wait for a
/// reader. `setLogFile` and `close` need the channel for themselves: it has no lock.
class KW_EXPORT GDASLLog : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// An empty sender logs under the program's name. `facility` is one of syslog's ("daemon",
    /// "local0") or a name of the host's own, which the journal keeps and other daemons file under
    /// "user". Connects at once or with the first message.
    GDASLLog(const std::string& sender, const std::string& facility, bool connectImmediately);
    ~GDASLLog() override;

    void emergency(std::string_view message) { log(SystemLogLevel::emergency, message); }
    void alert(std::string_view message) { log(SystemLogLevel::alert, message); }
    void critical(std::string_view message) { log(SystemLogLevel::critical, message); }
    void error(std::string_view message) { log(SystemLogLevel::error, message); }
    void warning(std::string_view message) { log(SystemLogLevel::warning, message); }
    void notice(std::string_view message) { log(SystemLogLevel::notice, message); }
    void info(std::string_view message) { log(SystemLogLevel::info, message); }
    void debug(std::string_view message) { log(SystemLogLevel::debug, message); }

    /// Copies each message from now on into this file, in the place of the former one: a line a
    /// message, appended. The file is made where there is none, with permission bits 0646 less the
    /// process's mask. 0, or the negative result of the failed open, which leaves no file.
    ///
    /// Deliberate: a new channel's descriptor is 0, and the call closes the former descriptor
    /// first, so a channel's first file closes the process's standard input, or whatever has that
    /// number by then. (That may be another channel's file, which keeps getting that channel's
    /// messages all the same.)
    std::int32_t setLogFile(const std::string& path);

    /// The descriptor of the file: 0 at first, negative after a failed `setLogFile`.
    std::int32_t fd() const { return m_fd; }

    /// Whether alert and critical messages, and only these, are also written to standard output, as
    /// they are, without an end of line. False at first.
    bool logToStdOut() const { return m_logToStdOut.load(std::memory_order_relaxed); }
    void setLogToStdOut(bool value) { m_logToStdOut.store(value, std::memory_order_relaxed); }

    /// Ends the channel, as the destructor does; later messages are dropped. Deliberate: the file
    /// is detached but its descriptor stays open.
    void close();

    /// How many messages did not reach the system log: there was none, it did not take them fast
    /// enough, or they were too long for it. A copy in the file does not count. 0
    /// once the channel is closed.
    std::uint64_t unsentMessageCount() const;

private:
    void log(SystemLogLevel level, std::string_view message) {
        if (m_manager.enabled())
            send(level, message);
    }
    void send(SystemLogLevel level, std::string_view message);

    std::int32_t m_fd = 0;
    std::atomic<bool> m_logToStdOut = false;
    GDASLLogManager& m_manager;
    std::unique_ptr<SystemLogClient> m_client; ///< null once closed
};

/// The message that logs this text: its percent signs doubled.
KW_EXPORT std::string messageFromText(std::string_view text);

} // namespace kw
