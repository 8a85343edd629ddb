// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever URL: without a "//" an exception, else words that are put together to what was there,
// unless the command held an escaped separator.
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/url/KWUrlDelegateHelper.h>
#include <fuzz/Require.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kw::fuzz::require;
    constexpr std::string_view separator = "&!p!&", escapedSeparator = "%26%21p%21%26";
    const std::string_view url(reinterpret_cast<const char*>(data), size);
    const auto slashes = url.find("//");
    try {
        const auto words = kw::KWUrlDelegateHelper::parametersFromString(url);
        require(slashes != url.npos && !words.empty());
        const std::string_view text = url.substr(slashes + 2);
        const std::string_view command = text.substr(0, text.find(separator));
        const auto escape = command.find(escapedSeparator);
        require(words[0] == command.substr(0, escape));

        std::string joined = words[0];
        std::size_t next = 1;
        if (escape != command.npos) {
            require(words.size() > 1);
            require(words[1].find(escapedSeparator) == std::string::npos);
            require(!words[1].starts_with("http//"));
            joined = command;
            next = 2;
        }
        for (; next < words.size(); ++next) {
            require(words[next].find(separator) == std::string::npos);
            joined.append(separator).append(words[next]);
        }
        require(joined == text);
    } catch (const kw::NSException& exception) {
        require(slashes == url.npos && exception.name() == kw::NSRangeException);
    }
    return 0;
}
