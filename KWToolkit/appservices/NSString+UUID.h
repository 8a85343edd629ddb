// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>

namespace kw {

/// A new random UUID (RFC 9562, version 4) in 36 characters, with capital letters. Any thread; a
/// forked process gets others than its parent. Nothing where the system has no random numbers.
KW_EXPORT std::optional<std::string> uuid();

} // namespace kw
