// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Text as an argument of a query.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace kw {

/// Escapes every byte but the ASCII letters and digits and - . _ ~ with upper-case digits. Nothing
/// where the text is not valid UTF-8 (RFC 3629).
KW_EXPORT std::optional<std::string> gtm_stringByEscapingForURLArgument(std::string_view text);

/// Turns plus signs into blanks and then every escape, in digits of either case, into its byte.
/// Nothing where a percent sign is not followed by two hexadecimal digits, or where the text or
/// what comes out is not valid UTF-8.
KW_EXPORT std::optional<std::string> gtm_stringByUnescapingFromURLArgument(std::string_view text);

} // namespace kw
