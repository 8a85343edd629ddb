// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/ResamplingLoops.h>

#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace kw {

namespace {

std::int16_t within16(std::int32_t value) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(
        value, std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()));
}

/// Cuts a sum, which begins with half of what is cut off, to a component.
std::int16_t cut(std::int32_t sum, int bits) { return within16(sum >> bits); }

constexpr float unit = 1 << fractionBits;

constexpr std::int32_t halfOf(int bits) { return 1 << (bits - 1); }

void premultiply(const std::uint8_t* pixels, std::int64_t count, std::uint8_t* result) {
    for (; count > 0; --count, pixels += 4, result += 4) {
        for (std::size_t i = 0; i < 3; ++i)
            result[i] = multiplied(pixels[i], pixels[3]);
        result[3] = pixels[3];
    }
}

void addBytes(const std::uint8_t* const* rows, std::int64_t pixels, const RowSum* sums,
    std::size_t count, int weightSum) {
    const float factor = unit / static_cast<float>(weightSum);
    for (const RowSum* row = sums; row < sums + count; ++row) {
        for (std::int64_t i = 0; i < 4 * pixels; ++i) {
            std::int32_t sum = row->isFirst ? 0 : row->sums[i];
            for (std::size_t y = 0; y < rowsAtOnce; ++y)
                sum += row->weights[y] * rows[y][i];
            if (row->isLast)
                row->result[i] = within16(
                    static_cast<std::int32_t>(std::lrintf(static_cast<float>(sum) * factor)));
            else
                row->sums[i] = sum;
        }
    }
}

void widen(const std::uint8_t* pixels, std::int64_t count, std::int16_t* result) {
    for (std::int64_t i = 0; i < 4 * count; ++i)
        result[i] = static_cast<std::int16_t>(pixels[i] << fractionBits);
}

AlignedVector<std::int16_t> arranged(const ResamplingWeights& weights) {
    return {weights.values().begin(), weights.values().end()};
}

void addAcross(const std::int16_t* pixels, const ResamplingWeights& weights,
    const std::int16_t* arranged, std::int16_t* result) {
    const int bits = bitsOf(weights);
    for (const ResamplingWeights::Taps& taps : weights.taps()) {
        const std::int16_t* pixel = pixels + 4 * (taps.first - weights.firstSource());
        const std::int16_t* const own = arranged + taps.offset;
        std::array<std::int32_t, 4> sums {};
        for (std::int64_t i = 0; i < taps.count; ++i, pixel += 4) {
            for (std::size_t component = 0; component < 4; ++component)
                sums[component] += own[i] * pixel[component];
        }
        for (const std::int32_t sum : sums)
            *result++ = cut(sum + halfOf(bits), bits);
    }
}

void interleave(
    const std::int16_t* one, const std::int16_t* other, std::int64_t pixels, std::int16_t* result) {
    for (std::int64_t i = 0; i < 4 * pixels; ++i) {
        *result++ = one[i];
        *result++ = other[i];
    }
}

void finish(
    const std::int16_t* pixels, std::int64_t count, RowFinish finish, std::uint8_t* result) {
    const auto byte = [](std::int16_t component, int maximum) {
        return static_cast<std::uint8_t>(
            std::clamp((component + halfOf(fractionBits)) >> fractionBits, 0, maximum));
    };
    for (; count > 0; --count, pixels += 4, result += 4) {
        const std::uint8_t alpha = finish.isOpaque ? 255 : byte(pixels[3], 255);
        for (std::size_t i = 0; i < 3; ++i)
            result[i] = byte(pixels[i], alpha);
        result[3] = alpha;
        if (finish.swapsRedAndBlue)
            std::swap(result[0], result[2]);
    }
}

void addDown(const std::int16_t* const* pairs, const std::int16_t* weights, std::int64_t count,
    int bits, std::int64_t pixels, RowFinish rowFinish, std::uint8_t* result) {
    for (std::int64_t x = 0; x < pixels; ++x) {
        std::int16_t pixel[4];
        for (std::int64_t i = 0; i < 4; ++i) {
            std::int32_t sum = halfOf(bits);
            for (std::int64_t pair = 0; pair < count; ++pair) {
                const std::int16_t* const two = pairs[pair] + 2 * (4 * x + i);
                sum += weights[2 * pair] * two[0] + weights[2 * pair + 1] * two[1];
            }
            pixel[i] = cut(sum, bits);
        }
        finish(pixel, 1, rowFinish, result + 4 * x);
    }
}

} // namespace

const ResamplingLoops portableLoops {
    &premultiply, &addBytes, &widen, &arranged, &addAcross, &interleave, &finish, &addDown};

#ifndef __x86_64__
std::vector<const ResamplingLoops*> availableLoops() { return {&portableLoops}; }
#endif

const ResamplingLoops& resamplingLoops() {
    static const ResamplingLoops& best = *availableLoops().back();
    return best;
}

} // namespace kw
