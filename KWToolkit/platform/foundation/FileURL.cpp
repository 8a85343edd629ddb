// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/FileURL.h>

#include <algorithm>
#include <charconv>

namespace kw {

namespace {

constexpr std::string_view scheme = "file:";
constexpr std::string_view emptyHost = "//";

/// Besides letters and digits, what a path may hold as it is (RFC 3986, "pchar"), and the slash.
constexpr std::string_view plain = "-._~!$&'()*+,;=:@/";

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

} // namespace

bool isFileURL(std::string_view url) {
    return url.size() >= scheme.size()
        && std::ranges::equal(url.substr(0, scheme.size()), scheme, [](char one, char other) {
               return (one >= 'A' && one <= 'Z' ? one | 0x20 : one) == other;
           });
}

std::optional<std::string> pathOfFileURL(std::string_view url) {
    if (!isFileURL(url))
        return std::nullopt;
    url.remove_prefix(scheme.size());
    url = url.substr(0, url.find_first_of("?#"));
    if (url.starts_with(emptyHost))
        url.remove_prefix(std::min(url.find('/', emptyHost.size()), url.size()));
    std::string path;
    while (!url.empty()) {
        char byte = url.front();
        url.remove_prefix(1);
        if (byte == '%') {
            unsigned char value = 0;
            const std::string_view digits = url.substr(0, 2);
            if (digits.size() < 2
                || std::from_chars(digits.begin(), digits.end(), value, 16).ptr != digits.end())
                return std::nullopt;
            byte = static_cast<char>(value);
            url.remove_prefix(2);
        }
        path += byte;
    }
    return path;
}

std::string fileURLOfPath(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string url(scheme);
    url += emptyHost;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isLetterOrDigit(c) || plain.find(c) != std::string_view::npos)
            url += c;
        else
            url += {'%', digits[byte >> 4], digits[byte & 0xF]};
    }
    return url;
}

} // namespace kw
