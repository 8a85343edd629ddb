// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// UTF-8, UTF-16 units and Mac OS Roman.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kw {

/// Appends the UTF-8 form of one UTF-16 unit. A lone surrogate, which has none, becomes U+FFFD; the
/// unit 0 is the character U+0000.
KW_EXPORT void appendUnit(std::string& utf8, char16_t unit);

/// Takes the first code point off valid UTF-8 text (RFC 3629: no overlong forms, no surrogates,
/// nothing above U+10FFFF) and returns it. Empty, with the text unchanged, where the text is empty
/// or does not begin with a valid sequence.
KW_EXPORT std::optional<char32_t> takeCodePoint(std::string_view& utf8);

/// Whether all of the text is valid UTF-8 as `takeCodePoint` knows it. Empty text is.
KW_EXPORT bool isValidUTF8(std::string_view text);

/// The first UTF-16 unit of the text; empty where there is none.
KW_EXPORT std::optional<char16_t> firstUnit(std::string_view utf8);

/// The text in Mac OS Roman (string encoding 30, the Unicode consortium's table ROMAN.TXT), or
/// nothing if any character of it has no place there or the text is not valid UTF-8.
KW_EXPORT std::optional<std::string> macOSRoman(std::string_view utf8);

/// The UTF-8 form of UTF-16 text (string encoding 10). A byte order mark, which is left out, tells
/// the order; without one it is the machine's. A lone surrogate becomes U+FFFD. Nothing where half
/// a unit is left over.
KW_EXPORT std::optional<std::string> textFromUTF16(std::string_view bytes);

} // namespace kw
