// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <system_error>
#include <vector>

namespace kw {

/// Starts a program, found through PATH, that outlives this process and is nobody's child to wait
/// for: in a session of its own, with nothing on standard input and all signals as they are at
/// first. Returns once it runs; the error is why it does not. Any thread.
KW_EXPORT std::error_code startDetached(const std::vector<std::string>& arguments);

} // namespace kw
