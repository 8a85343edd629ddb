// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kw {

/// Sixteen bytes that are worked on at once, by whatever vector instructions the machine has. A
/// comparison gives 0xFF where it holds, else 0.
using Lanes [[gnu::vector_size(16)]] = std::uint8_t;
inline constexpr std::size_t laneCount = sizeof(Lanes);

inline Lanes lanesAt(const void* bytes) {
    Lanes lanes;
    std::memcpy(&lanes, bytes, sizeof lanes);
    return lanes;
}

inline void putLanes(Lanes lanes, std::uint8_t* bytes) { std::memcpy(bytes, &lanes, sizeof lanes); }

inline Lanes isEqual(Lanes lanes, std::uint8_t byte) {
    return reinterpret_cast<Lanes>(lanes == byte);
}

inline Lanes isAtLeast(Lanes lanes, std::uint8_t byte) {
    return reinterpret_cast<Lanes>(lanes >= byte);
}

inline Lanes isWithin(Lanes lanes, std::uint8_t first, std::uint8_t last) {
    const auto width = static_cast<std::uint8_t>(last - first);
    return reinterpret_cast<Lanes>(lanes - first <= width);
}

inline Lanes choose(Lanes mask, Lanes one, Lanes other) { return (one & mask) | (other & ~mask); }

/// Each two that begin at an even place in the other's place.
inline Lanes neighbours(Lanes lanes) {
    using Pairs [[gnu::vector_size(16)]] = std::uint16_t;
    const auto pairs = reinterpret_cast<Pairs>(lanes);
    return reinterpret_cast<Lanes>(pairs << 8 | pairs >> 8);
}

inline bool isAnySet(Lanes lanes) {
    std::uint64_t halves[2];
    static_assert(sizeof halves == sizeof lanes);
    std::memcpy(halves, &lanes, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

inline std::size_t sumOf(Lanes lanes) {
    std::uint64_t halves[2];
    std::memcpy(halves, &lanes, sizeof halves);
    std::uint64_t sum = 0;
    for (const std::uint64_t half : halves) {
        constexpr std::uint64_t everyOther = 0x00FF00FF00FF00FF;
        sum += (((half & everyOther) + (half >> 8 & everyOther)) * 0x0001000100010001) >> 48;
    }
    return sum;
}

struct ByteRange {
    std::uint8_t first, last;
};

/// How many bytes are in any of some ranges, none of which overlaps another. Takes those counted
/// off the text; what is left is less than `laneCount`.
template <std::size_t rangeCount>
std::size_t countWithin(std::string_view& text, const std::array<ByteRange, rangeCount>& ranges) {
    std::size_t count = 0;
    while (text.size() >= laneCount) {
        Lanes counts {};
        // A lane counts to 255.
        for (int i = 0; i < 255 && text.size() >= laneCount; ++i) {
            const Lanes bytes = lanesAt(text.data());
            for (const ByteRange& range : ranges)
                counts -= isWithin(bytes, range.first, range.last);
            text.remove_prefix(laneCount);
        }
        count += sumOf(counts);
    }
    return count;
}

} // namespace kw
