// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>

namespace kw {

/// What is known of the running process.
class KW_EXPORT NSProcessInfo {
public:
    /// A text that no other call answers, in whatever process and whenever: a number drawn when the
    /// process first asks, the time, and a count. Not a secret, as it can be guessed. Any thread.
    static std::string globallyUniqueString();
};

} // namespace kw
