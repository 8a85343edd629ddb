// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever text: valid UTF-8 and nothing else is escaped, to unreserved characters and escapes,
// threefold at most, and comes back; what unescaping gives is valid UTF-8 and a second way to
// unescape agrees.
#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <fuzz/Require.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

bool isValidByCharacters(std::string_view text) {
    while (kw::takeCodePoint(text)) { }
    return text.empty();
}

std::optional<std::string> unescapedByBytes(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i] == '+' ? ' ' : text[i];
            continue;
        }
        unsigned char byte = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const char* const end = digits.data() + digits.size();
        if (digits.size() < 2 || std::from_chars(digits.data(), end, byte, 16).ptr != end)
            return std::nullopt;
        result += static_cast<char>(byte);
        i += 2;
    }
    if (!isValidByCharacters(text) || !isValidByCharacters(result))
        return std::nullopt;
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kw::fuzz::require;
    constexpr std::string_view alphabet =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~%";
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    const auto escaped = kw::gtm_stringByEscapingForURLArgument(text);
    require(kw::isValidUTF8(text) == isValidByCharacters(text));
    require(escaped.has_value() == kw::isValidUTF8(text));
    if (escaped) {
        require(escaped->size() <= 3 * size);
        require(escaped->find_first_not_of(alphabet) == escaped->npos);
        require(kw::gtm_stringByUnescapingFromURLArgument(*escaped) == text);
    }
    require(kw::gtm_stringByUnescapingFromURLArgument(text) == unescapedByBytes(text));
    return 0;
}
