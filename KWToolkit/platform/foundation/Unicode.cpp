// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Unicode.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace kw {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

// Mac OS Roman 0x80 to 0xFF.
constexpr std::array<char16_t, 128> upperMacOSRoman {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, // 80
    0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5, 0x00E7, 0x00E9, 0x00E8, // 88
    0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, // 90
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, // 98
    0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6, 0x00DF, // A0
    0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, // A8
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211, // B0
    0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, // B8
    0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, // C0
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153, // C8
    0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, // D0
    0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, // D8
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1, // E0
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, // E8
    0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC, // F0
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7, // F8
};

constexpr bool isSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

// What a reader of UTF-8 expects next. The number of a state is its place in a row of
// `transitions`.
enum ReaderState : std::uint8_t {
    malformed = 0, // for good
    character = 6,
    oneMore = 12,
    twoMore = 18,
    threeMore = 24,
    restOfE0 = 30,
    restOfED = 36,
    restOfF0 = 42,
    restOfF4 = 48,
};

constexpr struct {
    ReaderState state;
    std::uint8_t first, last;
    ReaderState next;
} validSteps[] = {
    // RFC 3629, section 4
    {character, 0x00, 0x7F, character}, {character, 0xC2, 0xDF, oneMore},
    {character, 0xE0, 0xE0, restOfE0}, {character, 0xE1, 0xEC, twoMore},
    {character, 0xED, 0xED, restOfED}, {character, 0xEE, 0xEF, twoMore},
    {character, 0xF0, 0xF0, restOfF0}, {character, 0xF1, 0xF3, threeMore},
    {character, 0xF4, 0xF4, restOfF4}, {oneMore, 0x80, 0xBF, character},
    {twoMore, 0x80, 0xBF, oneMore}, {threeMore, 0x80, 0xBF, twoMore},
    {restOfE0, 0xA0, 0xBF, oneMore}, // below are overlong forms
    {restOfED, 0x80, 0x9F, oneMore}, // above are surrogates
    {restOfF0, 0x90, 0xBF, twoMore}, // below are overlong forms
    {restOfF4, 0x80, 0x8F, twoMore}, // above is nothing
};

// For each byte a row of next states, six bits wide, so that a step is a shift and no branch.
constexpr auto transitions = [] {
    std::array<std::uint64_t, 256> rows {};
    for (const auto& step : validSteps) {
        for (unsigned byte = step.first; byte <= step.last; ++byte)
            rows[byte] |= std::uint64_t {step.next} << step.state;
    }
    return rows;
}();

/// Reads a text in pieces.
class UTF8Reader {
public:
    void read(char byte) { m_row = transitions[static_cast<unsigned char>(byte)] >> (m_row & 63); }
    bool isBetweenCharacters() const { return (m_row & 63) == character; }

private:
    std::uint64_t m_row = character; // its low six bits are the state
};

constexpr std::size_t stride = 16;

bool isASCII(const char* bytes) {
    std::uint64_t halves[2];
    static_assert(sizeof halves == stride);
    std::memcpy(halves, bytes, stride);
    return ((halves[0] | halves[1]) & 0x8080808080808080) == 0;
}

} // namespace

void appendUnit(std::string& utf8, char16_t unit) {
    const char32_t code = isSurrogate(unit) ? replacementCharacter : unit;
    if (code < 0x80) {
        utf8 += static_cast<char>(code);
    } else if (code < 0x800) {
        utf8 += static_cast<char>(0xC0 | code >> 6);
        utf8 += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        utf8 += static_cast<char>(0xE0 | code >> 12);
        utf8 += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
}

std::optional<char32_t> takeCodePoint(std::string_view& utf8) {
    if (utf8.empty())
        return std::nullopt;

    struct Form {
        unsigned char leadMask, lead;
        std::size_t length;
        char32_t smallest; // anything below is an overlong form
    };
    static constexpr Form forms[] = {
        {0x80, 0x00, 1, 0},
        {0xE0, 0xC0, 2, 0x80},
        {0xF0, 0xE0, 3, 0x800},
        {0xF8, 0xF0, 4, 0x10000},
    };
    const auto lead = static_cast<unsigned char>(utf8.front());
    const auto form = std::ranges::find_if(forms,
        [lead](const Form& candidate) { return (lead & candidate.leadMask) == candidate.lead; });
    if (form == std::end(forms) || utf8.size() < form->length)
        return std::nullopt;

    char32_t code = lead & ~form->leadMask;
    for (std::size_t i = 1; i < form->length; ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if ((byte & 0xC0) != 0x80)
            return std::nullopt;
        code = code << 6 | (byte & 0x3F);
    }
    if (code < form->smallest || isSurrogate(code) || code > 0x10FFFF)
        return std::nullopt;
    utf8.remove_prefix(form->length);
    return code;
}

bool isValidUTF8(std::string_view text) {
    // A step waits for the one before, so the halves are read side by side. The second begins where
    // a character may; where three bytes back there is none, neither is the text valid.
    std::size_t middle = text.size() / 2;
    for (int i = 0; i < 3 && middle > 0 && (text[middle] & 0xC0) == 0x80; ++i)
        --middle;
    std::string_view first = text.substr(0, middle), second = text.substr(middle);
    UTF8Reader firstReader, secondReader;
    for (; first.size() >= stride; first.remove_prefix(stride), second.remove_prefix(stride)) {
        const bool isSkipped = firstReader.isBetweenCharacters()
            && secondReader.isBetweenCharacters() && isASCII(first.data())
            && isASCII(second.data());
        for (std::size_t i = 0; !isSkipped && i < stride; ++i) {
            firstReader.read(first[i]);
            secondReader.read(second[i]);
        }
    }
    for (const char byte : first)
        firstReader.read(byte);
    for (const char byte : second)
        secondReader.read(byte);
    return firstReader.isBetweenCharacters() && secondReader.isBetweenCharacters();
}

std::optional<char16_t> firstUnit(std::string_view utf8) {
    const auto code = takeCodePoint(utf8);
    if (!code)
        return std::nullopt;
    return static_cast<char16_t>(*code < 0x10000 ? *code : 0xD800 + ((*code - 0x10000) >> 10));
}

std::optional<std::string> macOSRoman(std::string_view utf8) {
    std::string bytes;
    while (!utf8.empty()) {
        const auto code = takeCodePoint(utf8);
        if (!code)
            return std::nullopt;
        if (*code < 0x80) {
            bytes += static_cast<char>(*code);
            continue;
        }
        const auto found = std::ranges::find(upperMacOSRoman, *code);
        if (found == upperMacOSRoman.end())
            return std::nullopt;
        bytes += static_cast<char>(0x80 + std::distance(upperMacOSRoman.begin(), found));
    }
    return bytes;
}

} // namespace kw
