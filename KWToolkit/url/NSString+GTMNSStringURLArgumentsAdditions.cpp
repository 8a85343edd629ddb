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

constexpr std::size_t stride = 128;
static_assert(stride % laneCount == 0);

/// Unescapes `stride` bytes, and the digits of an escape that begins in them; moves `from` and `to`
/// on. False where a percent sign has no digits. Reads `laneCount` bytes more, and may write all of
/// `stride` bytes and one.
///
/// As in EscapeTable nothing is guessed: each place gives the byte of its escape, or itself, and
/// what the digits of an escape give is dropped by being overwritten.
bool unescapeStride(const char*& from, char*& to) {
    Byte digits[stride + laneCount];
    for (std::size_t i = 0; i < sizeof digits; i += laneCount)
        putLanes(digitValues(lanesAt(from + i)), digits + i);

    // Flags of the two places before come first.
    Byte isEscape[2 + stride];
    isEscape[0] = isEscape[1] = 0;
    Byte bytes[stride + laneCount], kept[stride + laneCount];
    Lanes wrong {};
    for (std::size_t i = 0; i < stride; i += laneCount) {
        const Lanes here = lanesAt(from + i);
        const Lanes high = lanesAt(digits + i + 1), low = lanesAt(digits + i + 2);
        const Lanes isEscapeHere = isEqual(here, '%');
        wrong |= isEscapeHere & (high | low);
        const Lanes plain = here - (isEqual(here, '+') & ('+' - ' '));
        putLanes(choose(isEscapeHere, high << 4 | low, plain), bytes + i);
        putLanes(isEscapeHere, isEscape + 2 + i);
    }
    if (isAnySet(wrong & noDigit))
        return false;
    for (std::size_t i = 0; i < stride; i += laneCount)
        putLanes(1 & ~(lanesAt(isEscape + i) | lanesAt(isEscape + i + 1)), kept + i);
    putLanes(Lanes {}, bytes + stride);
    putLanes(Lanes {}, kept + stride);

    // Two bytes at a time: at even places now stands the first that is kept of two, and how many.
    constexpr Lanes isOdd {0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255};
    for (std::size_t i = 0; i < stride; i += laneCount) {
        const Lanes isKept = isEqual(lanesAt(kept + i), 1);
        putLanes(choose(isKept | isOdd, lanesAt(bytes + i), lanesAt(bytes + i + 1)), bytes + i);
        putLanes(lanesAt(kept + i) + lanesAt(kept + i + 1), kept + i);
    }
    for (std::size_t i = 0; i < stride; i += 2) {
        std::memcpy(to, bytes + i, 2);
        to += kept[i];
    }
    from += stride + (isEscape[stride] & 1) + (isEscape[stride + 1] & 2);
    return true;
}

} // namespace

std::optional<std::string> gtm_stringByEscapingForURLArgument(std::string_view text) {
    if (!isValidUTF8(text))
        return std::nullopt;
    return urlArgumentTable.escaped(text);
}

std::optional<std::string> gtm_stringByUnescapingFromURLArgument(std::string_view text) {
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
    while (toEnd - to > std::ptrdiff_t {stride}
        && fromEnd - from >= std::ptrdiff_t {stride + laneCount}) {
        if (!unescapeStride(from, to))
            return std::nullopt;
    }
    while (to < toEnd && from < fromEnd) {
        const char byte = *from++;
        if (byte != '%') {
            *to++ = byte == '+' ? ' ' : byte;
            continue;
        }
        if (fromEnd - from < 2)
            return std::nullopt;
        const Byte high = digitValue[static_cast<Byte>(*from++)];
        const Byte low = digitValue[static_cast<Byte>(*from++)];
        if ((high | low) & noDigit)
            return std::nullopt;
        *to++ = static_cast<char>(high << 4 | low);
    }
    if (from < fromEnd)
        return std::nullopt;
    if (escapes > 0 && !isValidUTF8(result))
        return std::nullopt;
    return result;
}

} // namespace kw
