// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <system_error>

namespace kw {

/// From now on, a crash of this process leaves a report where `KWCrashLogFinder` looks for it:
/// `~/Library/Logs/CrashReporter/<executable>_<date>-<pid>.crash`, readable by its owner only, with
/// the signal, the address, the thread, its backtrace with an offset in each module, and what the
/// main bundle says of the host at the time of this call. Dates are in UTC.
///
/// A crash is one of the signals SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGSYS, SIGTRAP and SIGABRT. The
/// report is written with async-signal-safe calls only, within the crashed process; then what
/// was set for the signal before this call takes place, as a rule the default action, with a core
/// dump where the system writes them.
///
/// Makes the folder. Also the calling thread gets a signal stack, so that running out of stack is
/// reported; other threads need one of their own for that (sigaltstack(2)). Called again, it takes
/// the main bundle's new values. Main thread. With an error no report will be written.
KW_EXPORT std::error_code installCrashReportWriter();

} // namespace kw
