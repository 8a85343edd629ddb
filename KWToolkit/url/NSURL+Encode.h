// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Text within a URL, such as the parameters of a host's own scheme.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <string_view>

namespace kw {

/// Escapes the characters ; / ? : @ & = + $ , [ ] # ! ' ( ) * and the blank, with upper-case
/// digits. All other bytes stay as they are; the text need not be valid UTF-8.
///
/// Deliberate: the percent sign stays as well, so text that holds escapes already is changed by
/// `urlDecode(urlEncode(text))`.
KW_EXPORT std::string urlEncode(std::string_view text);

/// Turns the escapes that `urlEncode` makes, and no other, into their characters: "%2f", "%25" and
/// "%C3%A9" stay as they are.
KW_EXPORT std::string urlDecode(std::string_view text);

} // namespace kw
