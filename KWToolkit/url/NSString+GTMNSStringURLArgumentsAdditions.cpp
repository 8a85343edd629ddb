// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>

#include <KWToolkit/platform/foundation/Lanes.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/url/URLArgument.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kw {

namespace {

using Byte = std::uint8_t;

constexpr Byte noDigit = 0x10;

// The values of hexadecimal digits.
Lanes digitValues(Lanes bytes) {
    const Lanes letters = bytes | 0x20;
    const Lanes isDigit = isWithin(bytes, '0', '9');
    const Lanes isLetter = isWithin(letters, 'a', 'f');
    return ((bytes - '0') & isDigit) | ((letters - ('a' - 10)) & isLetter)
        | (noDigit & ~(isDigit | isLetter));
}

// The values of single ones.
constexpr auto digitValue = [] {
    std::array<Byte, 256> values {};
    values.fill(noDigit);
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    for (unsigned i = 0; i < digits.size(); ++i)
        values[static_cast<Byte>(digits[i])] = static_cast<Byte>(i < 16 ? i : i - 6);
    return values;
}();

/// Unescapes `laneCount` bytes and the digits of an escape that begins in them. Moves `from` and
/// `to` on and marks in `wrong` where a percent sign has no digits. Reads the two bytes before and
/// after, and may write as much as it reads.
///
/// As in EscapeTable nothing is guessed: each place gives the byte of its escape, or itself, and
/// what the digits of an escape give is dropped by being overwritten.
void unescapeLanes(const char*& from, char*& to, Lanes& wrong) {
    const Lanes here = lanesAt(from);
    const Lanes high = digitValues(lanesAt(from + 1)), low = digitValues(lanesAt(from + 2));
    const Lanes isEscape = isEqual(here, '%');
    wrong |= isEscape & (high | low) & noDigit;
    const Lanes plain = here - (isEqual(here, '+') & ('+' - ' '));
    const Lanes bytes = choose(isEscape, high << 4 | low, plain);
    const Lanes isKept = ~(isEqual(lanesAt(from - 1), '%') | isEqual(lanesAt(from - 2), '%'));

    // Two at a time: at even places comes the first that is kept of two, and how many are.
    constexpr Lanes isOdd {0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255};
    const Lanes kept = isKept & 1;
    Byte pairs[laneCount], sizes[laneCount];
    putLanes(choose(isKept | isOdd, bytes, neighbours(bytes)), pairs);
    putLanes(kept + neighbours(kept), sizes);
    for (std::size_t i = 0; i < laneCount; i += 2) {
        std::memcpy(to, pairs + i, 2);
        to += sizes[i];
    }
    const std::size_t more = from[laneCount - 1] == '%' ? 2 : 0;
    from += laneCount + more + (from[laneCount - 2] == '%');
}

// What is unescaped byte by byte, since setting out for more takes as long.
constexpr std::size_t longestShort = 48;

std::optional<std::string> unescapeShort(std::string_view text) {
    std::string result(text.size(), '\0');
    char* to = result.data();
    Byte seen = 0, made = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char byte = text[i];
        seen |= static_cast<Byte>(byte);
        if (byte == '%') {
            if (text.size() - i < 3)
                return std::nullopt;
            const Byte high = digitValue[static_cast<Byte>(text[i + 1])];
            const Byte low = digitValue[static_cast<Byte>(text[i + 2])];
            if ((high | low) & noDigit)
                return std::nullopt;
            byte = static_cast<char>(high << 4 | low);
            i += 2;
        } else if (byte == '+') {
            byte = ' ';
        }
        made |= static_cast<Byte>(byte);
        *to++ = byte;
    }
    result.resize(static_cast<std::size_t>(to - result.data()));
    if (((seen & 0x80) && !isValidUTF8(text)) || ((made & 0x80) && !isValidUTF8(result)))
        return std::nullopt;
    return result;
}

} // namespace

std::optional<std::string> gtm_stringByEscapingForURLArgument(std::string_view text) {
    if (!isValidUTF8(text))
        return std::nullopt;
    return urlArgumentTable.escaped(text);
}

std::optional<std::string> gtm_stringByUnescapingFromURLArgument(std::string_view text) {
    if (text.size() <= longestShort)
        return unescapeShort(text);
    std::string_view rest = text;
    auto escapes = countWithin(rest, std::array {ByteRange {'%', '%'}});
    escapes += static_cast<std::size_t>(std::ranges::count(rest, '%'));
    if (escapes > text.size() / 3 || !isValidUTF8(text))
        return std::nullopt;

    // Where percent signs have no digits, more may come of what is before them than this.
    std::string result(text.size() - 2 * escapes, '\0');
    const char* from = text.data();
    const char* const fromEnd = from + text.size();
    char* to = result.data();
    char* const toEnd = to + result.size();
    const auto unescapeUntil = [&](const char* stop) {
        while (to < toEnd && from < stop) {
            const char byte = *from++;
            if (byte != '%') {
                *to++ = byte == '+' ? ' ' : byte;
                continue;
            }
            if (fromEnd - from < 2)
                return false;
            const Byte high = digitValue[static_cast<Byte>(*from++)];
            const Byte low = digitValue[static_cast<Byte>(*from++)];
            if ((high | low) & noDigit)
                return false;
            *to++ = static_cast<char>(high << 4 | low);
        }
        return true;
    };
    constexpr std::ptrdiff_t around = 2;
    if (!unescapeUntil(from + std::min(around, fromEnd - from)))
        return std::nullopt;
    Lanes wrong {};
    while (fromEnd - from >= std::ptrdiff_t {laneCount} + around
        && toEnd - to >= std::ptrdiff_t {laneCount} + around)
        unescapeLanes(from, to, wrong);
    if (!unescapeUntil(fromEnd))
        return std::nullopt;
    if (from < fromEnd || isAnySet(wrong))
        return std::nullopt;
    if (escapes > 0 && !isValidUTF8(result))
        return std::nullopt;
    return result;
}

} // namespace kw
