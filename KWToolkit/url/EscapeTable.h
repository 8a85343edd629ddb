// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/url/Lanes.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kw {

/// How each byte of a text is written into a URL: as it stands, or as a percent sign and two
/// upper-case hexadecimal digits.
template <std::size_t rangeCount>
class EscapeTable {
public:
    /// The ranges of bytes that are escaped; none touches another.
    constexpr explicit EscapeTable(const ByteRange (&escaped)[rangeCount]) {
        std::ranges::copy(escaped, m_escaped.begin());
        constexpr std::string_view digits = "0123456789ABCDEF";
        for (unsigned byte = 0; byte < m_forms.size(); ++byte)
            m_forms[byte] = std::bit_cast<Word>(Form {{static_cast<char>(byte)}, 1});
        for (const ByteRange& range : m_escaped) {
            for (unsigned byte = range.first; byte <= range.last; ++byte)
                m_forms[byte] =
                    std::bit_cast<Word>(Form {{'%', digits[byte >> 4], digits[byte & 0xF]}, 3});
        }
    }

    /// Whether these three bytes are what a byte is escaped to.
    bool isEscape(std::string_view escape, char byte) const {
        const Form form = std::bit_cast<Form>(m_forms[static_cast<unsigned char>(byte)]);
        return escape == std::string_view(form.text, form.size);
    }

    std::size_t escapedSize(std::string_view text) const {
        return text.size() + 2 * countWithin(text, m_escaped);
    }

    /// Appends the escaped text. A string with room for it is not allocated anew.
    void append(std::string& result, std::string_view text) const {
        // Which bytes are escaped is not to be guessed, and a wrong guess costs more than a dozen
        // bytes do. So each takes the same way: its form is stored whole, and what is too much of
        // it is overwritten by the next.
        constexpr std::size_t stride = 512;
        char buffer[stride * 3 + 1];
        for (; !text.empty(); text.remove_prefix(std::min(stride, text.size()))) {
            char* end = buffer;
            for (const char byte : text.substr(0, stride)) {
                const Word form = m_forms[static_cast<unsigned char>(byte)];
                std::memcpy(end, &form, sizeof form);
                end += std::bit_cast<Form>(form).size;
            }
            result.append(buffer, end);
        }
    }

    std::string escaped(std::string_view text) const {
        std::string result;
        result.reserve(escapedSize(text));
        append(result, text);
        return result;
    }

private:
    struct Form {
        char text[3];
        std::uint8_t size;
    };
    // A form as one number, so that it is loaded once and stored at once.
    using Word = std::uint32_t;

    std::array<ByteRange, rangeCount> m_escaped {};
    std::array<Word, 256> m_forms {};
};

} // namespace kw
