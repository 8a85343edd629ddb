// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/NSURL+Encode.h>

#include <KWToolkit/url/EscapeTable.h>

namespace kw {

namespace {

constexpr EscapeTable table({{' ', '!'}, {'#', '$'}, {'&', ','}, {'/', '/'}, {':', ';'}, {'=', '='},
    {'?', '@'}, {'[', '['}, {']', ']'}});

// Of a hexadecimal digit; something for any other byte.
int digitValue(char digit) { return (digit & 0xF) + (digit & 0x40 ? 9 : 0); }

} // namespace

std::string urlEncode(std::string_view text) { return table.escaped(text); }

std::string urlDecode(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (;;) {
        const auto percent = text.find('%');
        result += text.substr(0, percent);
        if (percent == text.npos)
            return result;
        text.remove_prefix(percent);
        const std::string_view escape = text.substr(0, 3);
        const char byte = escape.size() == 3
            ? static_cast<char>(digitValue(escape[1]) << 4 | digitValue(escape[2]))
            : '%';
        const bool isOurs = table.isEscape(escape, byte);
        result += isOurs ? byte : '%';
        text.remove_prefix(isOurs ? escape.size() : 1);
    }
}

} // namespace kw
