// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever text: encoding grows it threefold at most, leaves none of the table's characters and
// comes back; decoding makes nothing but the table's characters.
#include <KWToolkit/url/NSURL+Encode.h>
#include <fuzz/Require.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kw::fuzz::require;
    constexpr std::string_view escaped = ";/?:@&=+$,[]#!'()* ";
    const std::string text(reinterpret_cast<const char*>(data), size);

    const std::string encoded = kw::urlEncode(text);
    const auto growth =
        std::ranges::count_if(text, [&](char byte) { return escaped.find(byte) != escaped.npos; });
    require(encoded.size() == size + 2 * static_cast<std::size_t>(growth));
    require(encoded.find_first_of(escaped) == encoded.npos);
    // What looked like an escape before is decoded too.
    require(kw::urlDecode(encoded) == kw::urlDecode(text));

    const std::string decoded = kw::urlDecode(text);
    require(decoded.size() <= size);
    require((decoded == text) == (decoded.size() == size));
    require(kw::urlEncode(decoded) == encoded);
    return 0;
}
