// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace kw {

/// Starts a program, found through PATH, that outlives this process and is nobody's child to wait
/// for: in a session of its own, with nothing on standard input and all signals as they are at
/// first. Returns once it runs; the error is why it does not. No argument can have a zero byte. Any
/// thread.
///
/// Where a folder is given, it comes first in the program's PATH.
KW_EXPORT std::error_code startDetached(
    const std::vector<std::string>& arguments, const std::string& firstInPath = {});

/// Runs a function in a process that is nobody's child to wait for, with all signals as they are at
/// first. The function makes only async-signal-safe calls, as other threads may have held any lock.
/// Returns when it closes the descriptor, which a new program does, too; an errno written to it is
/// the error.
std::error_code forkDetached(const std::function<void(int errorOutput)>& run);

} // namespace kw
