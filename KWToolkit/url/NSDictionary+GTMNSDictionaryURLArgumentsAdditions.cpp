// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/NSDictionary+GTMNSDictionaryURLArgumentsAdditions.h>

#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <KWToolkit/url/URLArgument.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace kw {

namespace {

/// Takes what is before the delimiter off the text, with the delimiter; all of it where there is
/// none.
std::string_view takeUntil(std::string_view& text, char delimiter) {
    const std::string_view piece = text.substr(0, text.find(delimiter));
    text.remove_prefix(std::min(piece.size() + 1, text.size()));
    return piece;
}

std::string unescaped(std::string_view text) {
    return gtm_stringByUnescapingFromURLArgument(text).value_or(std::string());
}

/// A key or a value on its way into a query.
struct Argument {
    std::string_view text;
    bool isValid;

    explicit Argument(std::string_view argument)
        : text(argument)
        , isValid(isValidUTF8(argument)) { }

    // What "%@" prints for nothing.
    static constexpr std::string_view nothing = "(null)";

    std::size_t size() const {
        return isValid ? urlArgumentTable.escapedSize(text) : nothing.size();
    }
    char* write(char* to, const char* limit) const {
        return isValid ? urlArgumentTable.write(to, limit, text)
                       : std::ranges::copy(nothing, to).out;
    }
};

} // namespace

std::map<std::string, std::string> gtm_dictionaryWithHttpArgumentsString(std::string_view query) {
    std::map<std::string, std::string> arguments;
    while (!query.empty()) {
        std::string_view value = takeUntil(query, '&');
        if (value.empty())
            continue;
        const std::string_view key = takeUntil(value, '=');
        // Queries made from a map, as ours are, come in its order. The first of a name counts.
        const std::size_t count = arguments.size();
        const auto place = arguments.try_emplace(arguments.end(), unescaped(key));
        if (arguments.size() > count)
            place->second = unescaped(value);
    }
    return arguments;
}

std::string gtm_httpArgumentsString(const PropertyMap& arguments) {
    std::map<std::string, std::string> texts;
    for (const auto& [key, value] : arguments)
        texts.emplace_hint(texts.end(), key, description(value));
    return gtm_httpArgumentsString(texts);
}

template <>
std::string gtm_httpArgumentsString(const std::map<std::string, std::string>& arguments) {
    std::vector<std::pair<Argument, Argument>> pairs;
    pairs.reserve(arguments.size());
    std::size_t size = 0;
    for (const auto& [key, value] : arguments) {
        const auto& pair = pairs.emplace_back(key, value);
        size += pair.first.size() + pair.second.size() + 2; // the "=" and the "&"
    }
    std::string query(size - !pairs.empty(), '\0'); // of "&" one less
    char* end = query.data();
    const char* const limit = end + query.size();
    for (const auto& [key, value] : pairs) {
        if (end != query.data())
            *end++ = '&';
        end = key.write(end, limit);
        *end++ = '=';
        end = value.write(end, limit);
    }
    return query;
}

} // namespace kw
