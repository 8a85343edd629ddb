// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSError.h>

#include <optional>
#include <string>

namespace kw {

/// The user information as text, with the keys "domain" and "code", which go before values of these
/// names, and with the underlying error's own such text, if it has one. Nothing for an error
/// without user information.
KW_EXPORT std::optional<std::string> debugDescription(const NSError& error);

} // namespace kw
