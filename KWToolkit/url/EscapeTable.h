// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/Lanes.h>

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
        for (unsigned byte = 0; byte < m_forms.size(); ++byte)
            m_sizes[byte] = static_cast<std::uint8_t>(sizeOf(m_forms[byte]));
    }

    /// Whether this is what the byte is escaped to.
    bool isEscape(std::string_view escape, char byte) const {
        const Form form = std::bit_cast<Form>(formOf(byte));
        return escape.size() == 3 && escape == std::string_view(form.text, form.size);
    }

    std::size_t escapedSize(std::string_view text) const {
        // For a short text it is not worth the while to set out.
        std::size_t size = 0;
        if (text.size() >= 2 * laneCount) {
            size = text.size() - text.size() % laneCount; // of what is counted
            size += 2 * countWithin(text, m_escaped);
        }
        for (const char byte : text)
            size += m_sizes[static_cast<unsigned char>(byte)];
        return size;
    }

    /// Writes the escaped text, `escapedSize` bytes, and returns their end. May write beyond it, up
    /// to `limit`.
    char* write(char* to, const char* limit, std::string_view text) const {
        // Which bytes are escaped is not to be guessed, and a wrong guess costs more than a dozen
        // bytes do. So each takes the same way: its form is stored whole, and what is too much of
        // it is overwritten by the next. The last have no such room.
        constexpr std::size_t batch = 4;
        while (text.size() >= batch && limit - to >= std::ptrdiff_t {batch * sizeof(Form)}) {
            // Where each goes does not wait for the stores before.
            const Word forms[batch] {
                formOf(text[0]), formOf(text[1]), formOf(text[2]), formOf(text[3])};
            std::size_t size = 0;
            for (const Word form : forms) {
                std::memcpy(to + size, &form, sizeof form);
                size += sizeOf(form);
            }
            to += size;
            text.remove_prefix(batch);
        }
        for (const char byte : text) {
            const Word form = formOf(byte);
            if (limit - to >= std::ptrdiff_t {sizeof form})
                std::memcpy(to, &form, sizeof form);
            else
                std::memcpy(to, &form, sizeOf(form));
            to += sizeOf(form);
        }
        return to;
    }

    std::string escaped(std::string_view text) const {
        std::string result(escapedSize(text), '\0');
        write(result.data(), result.data() + result.size(), text);
        return result;
    }

private:
    struct Form {
        char text[3];
        std::uint8_t size;
    };
    // A form as one number, so that it is loaded once and stored at once.
    using Word = std::uint32_t;

    Word formOf(char byte) const { return m_forms[static_cast<unsigned char>(byte)]; }
    static constexpr std::size_t sizeOf(Word form) { return std::bit_cast<Form>(form).size; }

    std::array<ByteRange, rangeCount> m_escaped {};
    std::array<Word, 256> m_forms {};
    std::array<std::uint8_t, 256> m_sizes {};
};

} // namespace kw
