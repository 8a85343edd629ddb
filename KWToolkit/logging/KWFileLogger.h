// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/logging/GDASLLog.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <string_view>

namespace kw {

/// The host's own channel: its sender is the host's name, its facility the host's identifier, and
/// its file is "debugLog" in the host's support folder, which grows and is never cut. One a
/// process, made on first use and never destroyed.
///
///     kw::KWFileLogger::sharedKWFileLogger().logInfo("started");
///
/// Making it closes standard input (see `GDASLLog::setLogFile`). Where the file cannot be opened,
/// messages go to the system log only.
class KW_EXPORT KWFileLogger : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The logger. However it is asked for, it is the same one.
    static KWFileLogger& sharedKWFileLogger();
    static KWFileLogger& allocWithZone() { return sharedKWFileLogger(); }
    /// Class set-up: makes the logger if there is none yet.
    static void initialize() { sharedKWFileLogger(); }
    /// Leaves a logger that is set up untouched.
    KWFileLogger& init() { return *this; }

    /// Logs at level info. Any thread.
    void logInfo(std::string_view message) { m_log.info(message); }

    /// The channel, for the other levels and its switches.
    GDASLLog& log() { return m_log; }

private:
    KWFileLogger();

    GDASLLog m_log;
};

} // namespace kw
