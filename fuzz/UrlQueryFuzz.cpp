// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever query: each argument in it is the first of its name, and a query built from the
// arguments gives them again.
#include <KWToolkit/url/NSDictionary+GTMNSDictionaryURLArgumentsAdditions.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <fuzz/Require.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kw::fuzz::require;
    const std::string_view query(reinterpret_cast<const char*>(data), size);
    const auto arguments = kw::gtm_dictionaryWithHttpArgumentsString(query);

    // From the last to the first, so that the first stays.
    std::map<std::string, std::string> expected;
    const auto unescaped = [](std::string_view text) {
        return kw::gtm_stringByUnescapingFromURLArgument(text).value_or("");
    };
    std::vector<std::string_view> pieces;
    for (std::size_t begin = 0; begin <= size;) {
        const std::size_t end = std::min(query.find('&', begin), size);
        pieces.push_back(query.substr(begin, end - begin));
        begin = end + 1;
    }
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
        const std::size_t equals = piece->find('=');
        if (!piece->empty())
            expected.insert_or_assign(unescaped(piece->substr(0, equals)),
                equals == piece->npos ? "" : unescaped(piece->substr(equals + 1)));
    }
    require(arguments == expected);

    const std::string built = kw::gtm_httpArgumentsString(arguments);
    require(built.find_first_of("+ #?/") == built.npos);
    require(kw::gtm_dictionaryWithHttpArgumentsString(built) == arguments);
    require(
        kw::gtm_httpArgumentsString(kw::PropertyMap(arguments.begin(), arguments.end())) == built);

    // Whatever bytes as key and value.
    const std::string one(query.substr(0, size / 2)), other(query.substr(size / 2));
    const std::map<std::string, std::string> raw {{one, other}, {other, one}};
    const auto again = kw::gtm_dictionaryWithHttpArgumentsString(kw::gtm_httpArgumentsString(raw));
    for (const auto& [key, value] : raw) {
        const auto isText = [](const std::string& text) {
            return kw::gtm_stringByEscapingForURLArgument(text).has_value();
        };
        if (isText(key) && isText(value) && key != "(null)")
            require(again.at(key) == value);
    }
    return 0;
}
