// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Unicode.h>

#include <KWToolkit/platform/foundation/Lanes.h>

#include <algorithm>
#include <array>
#include <bit>
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

bool isASCII(Lanes bytes) { return !isAnySet(bytes & 0x80); }

// The longest sequence less its last byte.
constexpr std::size_t lookBehind = 3;

/// Where valid UTF-8 (RFC 3629, section 4) does not go on in the bytes from `bytes`. The three
/// before count too.
Lanes malformedAt(const char* bytes) {
    const Lanes here = lanesAt(bytes), before = lanesAt(bytes - 1);
    const Lanes isWanted = isAtLeast(before, 0xC0) | isAtLeast(lanesAt(bytes - 2), 0xE0)
        | isAtLeast(lanesAt(bytes - lookBehind), 0xF0);
    // Less room after these: what is below is overlong, what is above a surrogate or nothing.
    const Lanes first = 0x80 + (isEqual(before, 0xE0) & 0x20) + (isEqual(before, 0xF0) & 0x10);
    const Lanes last = 0xBF - (isEqual(before, 0xED) & 0x20) - (isEqual(before, 0xF4) & 0x30);
    const auto isContinuation = reinterpret_cast<Lanes>(here - first <= last - first);
    const Lanes isNever = isEqual(here & 0xFE, 0xC0) | isAtLeast(here, 0xF5);
    return (isWanted ^ isContinuation) | isNever;
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
    while (text.size() >= laneCount && isASCII(lanesAt(text.data())))
        text.remove_prefix(laneCount);

    // One by one, until there are bytes before; a short text to its end.
    const std::size_t size = text.size();
    while (!text.empty() && (size < 2 * laneCount || size - text.size() < lookBehind)) {
        std::uint64_t eight = 0x80;
        if (text.size() >= sizeof eight)
            std::memcpy(&eight, text.data(), sizeof eight);
        if ((eight & 0x8080808080808080) == 0)
            text.remove_prefix(sizeof eight);
        else if (static_cast<unsigned char>(text[0]) < 0x80)
            text.remove_prefix(1);
        else if (!takeCodePoint(text))
            return false;
    }
    if (text.empty())
        return true;

    const char* bytes = text.data();
    const char* const last = bytes + text.size() - laneCount;
    Lanes malformed = malformedAt(last);
    for (; bytes < last; bytes += laneCount) {
        if (!isASCII(lanesAt(bytes - lookBehind) | lanesAt(bytes)))
            malformed |= malformedAt(bytes);
    }
    const Lanes end = lanesAt(last);
    const bool isCutShort =
        end[laneCount - 1] >= 0xC0 || end[laneCount - 2] >= 0xE0 || end[laneCount - 3] >= 0xF0;
    return !isCutShort && !isAnySet(malformed);
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

std::optional<std::string> textFromUTF16(std::string_view bytes) {
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    const bool isMachineBig = std::endian::native == std::endian::big;
    const bool isMarkedBig = bytes.starts_with("\xFE\xFF");
    const bool isMarkedLittle = bytes.starts_with("\xFF\xFE");
    if (isMarkedBig || isMarkedLittle)
        bytes.remove_prefix(2);
    const std::size_t high = isMarkedBig || (isMachineBig && !isMarkedLittle) ? 0 : 1;
    const auto unitAt = [&](std::size_t at) {
        return static_cast<char16_t>(static_cast<unsigned char>(bytes[at + high]) << 8
            | static_cast<unsigned char>(bytes[at + 1 - high]));
    };
    std::string text;
    text.reserve(bytes.size() / 2 * 3);
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        const char16_t unit = unitAt(at);
        const char16_t next = at + 2 < bytes.size() ? unitAt(at + 2) : 0;
        if ((unit & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00) {
            const char32_t code = 0x10000 + ((unit & 0x3FFu) << 10) + (next & 0x3FFu);
            text += static_cast<char>(0xF0 | code >> 18);
            text += static_cast<char>(0x80 | (code >> 12 & 0x3F));
            text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            text += static_cast<char>(0x80 | (code & 0x3F));
            at += 2;
        } else {
            appendUnit(text, unit);
        }
    }
    return text;
}

} // namespace kw
