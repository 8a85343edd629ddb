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

constexpr std::size_t stride = 256;
static_assert(stride % laneCount == 0);

/// Writes what comes of `stride` bytes of a text from `begin`, or of what is left of it, and
/// returns its end; null where a percent sign has no digits. May write beyond that end, but no more
/// than `stride` + 1 bytes in all.
///
/// As in EscapeTable nothing is guessed: each place gives the byte of its escape, or itself, and
/// what the digits of an escape give is dropped by being overwritten.
char* unescape(char* to, std::string_view text, std::size_t begin) {
    const std::size_t size = std::min(stride, text.size() - begin);
    const std::size_t padding = (laneCount - size % laneCount) % laneCount;
    const std::size_t end = size + padding;

    // The two bytes before and after count too. Zero is neither a percent sign nor a digit.
    constexpr std::size_t lookBehind = 2;
    Byte window[lookBehind + stride + laneCount];
    const std::size_t before = std::min(begin, lookBehind);
    std::memset(window, 0, lookBehind);
    Byte* const start = window + lookBehind - before;
    const std::size_t copied =
        text.copy(reinterpret_cast<char*>(start), before + size + 2, begin - before);
    std::memset(start + copied, 0, before + end + laneCount - copied);
    const Byte* const places = window + lookBehind;

    Byte digits[stride + laneCount];
    for (std::size_t i = 0; i < end + laneCount; i += laneCount)
        putLanes(digitValues(lanesAt(places + i)), digits + i);

    Byte bytes[stride + laneCount], kept[stride + laneCount];
    Lanes wrong {};
    for (std::size_t i = 0; i < end; i += laneCount) {
        const Lanes place = lanesAt(places + i);
        const Lanes high = lanesAt(digits + i + 1), low = lanesAt(digits + i + 2);
        const Lanes isEscape = isEqual(place, '%');
        wrong |= isEscape & (high | low) & noDigit;
        const Lanes plain = choose(isEqual(place, '+'), Lanes {} + ' ', place);
        putLanes(choose(isEscape, high << 4 | low, plain), bytes + i);
        const Lanes isDigit =
            isEqual(lanesAt(places + i - 1), '%') | isEqual(lanesAt(places + i - 2), '%');
        putLanes(~isDigit & 1, kept + i);
    }
    if (isAnySet(wrong))
        return nullptr;
    putLanes(Lanes {}, bytes + end);
    putLanes(Lanes {}, kept + end);

    // Two bytes at a time: at even places now stands the first that is kept of two, and how many.
    constexpr Lanes isOdd {0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255};
    for (std::size_t i = 0; i < end; i += laneCount) {
        const Lanes isKept = isEqual(lanesAt(kept + i), 1);
        putLanes(choose(isKept | isOdd, lanesAt(bytes + i), lanesAt(bytes + i + 1)), bytes + i);
        putLanes(lanesAt(kept + i) + lanesAt(kept + i + 1), kept + i);
    }
    for (std::size_t i = 0; i < end; i += 2) {
        std::memcpy(to, bytes + i, 2);
        to += kept[i];
    }
    return to - padding;
}

} // namespace

std::optional<std::string> gtm_stringByEscapingForURLArgument(std::string_view text) {
    if (!isValidUTF8(text))
        return std::nullopt;
    return urlArgumentTable.escaped(text);
}

std::optional<std::string> gtm_stringByUnescapingFromURLArgument(std::string_view text) {
    const auto escapes = countWithin(text, std::array {ByteRange {'%', '%'}});
    if (escapes > text.size() / 3 || !isValidUTF8(text))
        return std::nullopt;
    std::string result(text.size() - 2 * escapes, '\0');
    char* end = result.data();
    for (std::size_t begin = 0; begin < text.size(); begin += stride) {
        const auto room = static_cast<std::size_t>(result.data() + result.size() - end);
        char buffer[stride + 1];
        const bool isDirect = room >= sizeof buffer;
        char* const to = isDirect ? end : buffer;
        char* const toEnd = unescape(to, text, begin);
        // More comes than there is room for where percent signs further on have no digits.
        if (!toEnd || static_cast<std::size_t>(toEnd - to) > room)
            return std::nullopt;
        end = isDirect ? end + (toEnd - to) : std::copy(to, toEnd, end);
    }
    if (escapes > 0 && !isValidUTF8(result))
        return std::nullopt;
    return result;
}

} // namespace kw
