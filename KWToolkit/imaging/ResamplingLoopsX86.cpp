// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The loops with the wider instructions of the machines that have them.
#ifdef __x86_64__

// g++ 12 takes what its own AVX-512 functions leave undefined on purpose for a mistake (GCC bug
// 105593).
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <KWToolkit/imaging/ResamplingLoops.h>

#include <immintrin.h>

#include <algorithm>
#include <cstring>

namespace kw {

namespace {

// Vectors consist of parts of 128 bits that most instructions treat each for itself.

[[gnu::target("avx2")]] inline __m256i load(const void* bytes) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(bytes));
}

[[gnu::target("avx2")]] inline void store(void* bytes, __m256i vector) {
    _mm256_storeu_si256(static_cast<__m256i*>(bytes), vector);
}

/// Cuts sums of 32 bits; `bits` of them go.
[[gnu::target("avx2")]] inline __m256i cut(__m256i one, __m256i other, int bits) {
    const __m128i shift = _mm_cvtsi32_si128(bits);
    return _mm256_packs_epi32(_mm256_sra_epi32(one, shift), _mm256_sra_epi32(other, shift));
}

[[gnu::target("avx2")]] void premultiply(
    const std::uint8_t* pixels, std::int64_t count, std::uint8_t* result) {
    const __m256i alphaWords = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(6, 7, 6, 7, 6, 7, -1, -1, 14, 15, 14, 15, 14, 15, -1, -1));
    // The alpha itself is multiplied by 255.
    const __m256i whole = _mm256_set1_epi64x(0x00FF'0000'0000'0000);
    const __m256i half = _mm256_set1_epi16(128);
    const __m256i zero = _mm256_setzero_si256();
    const auto product = [&](__m256i words) __attribute__((target("avx2"))) {
        const __m256i factor = _mm256_or_si256(_mm256_shuffle_epi8(words, alphaWords), whole);
        const __m256i sum = _mm256_add_epi16(_mm256_mullo_epi16(words, factor), half);
        return _mm256_srli_epi16(_mm256_add_epi16(sum, _mm256_srli_epi16(sum, 8)), 8);
    };
    std::int64_t i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pixels + 4 * i));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(result + 4 * i),
            _mm256_packus_epi16(product(_mm256_unpacklo_epi8(bytes, zero)),
                product(_mm256_unpackhi_epi8(bytes, zero))));
    }
    portableLoops.premultiply(pixels + 4 * i, count - i, result + 4 * i);
}

/// Adds two products for each 32 bits.
[[gnu::target("avx2")]] inline __m256i addProducts(__m256i sums, __m256i values, __m256i weights) {
    return _mm256_add_epi32(sums, _mm256_madd_epi16(values, weights));
}

[[gnu::target("avx2")]] void addBytes(const std::uint8_t* const* rows, std::int64_t pixels,
    const RowSum* sums, std::size_t count, int bits) {
    const int shift = bits - fractionBits;
    const __m256i ones = _mm256_set1_epi16(1);
    for (std::int64_t x = 0; x < pixels; x += 8) {
        // The same component of four rows side by side, for the first of each four pixels, then for
        // the second and so on.
        __m256i fours[rowsAtOnce / 4][4];
        for (std::size_t y = 0; y < rowsAtOnce; y += 4) {
            const __m256i row[] {load(rows[y] + 4 * x), load(rows[y + 1] + 4 * x),
                load(rows[y + 2] + 4 * x), load(rows[y + 3] + 4 * x)};
            const __m256i low[] {
                _mm256_unpacklo_epi8(row[0], row[1]), _mm256_unpacklo_epi8(row[2], row[3])};
            const __m256i high[] {
                _mm256_unpackhi_epi8(row[0], row[1]), _mm256_unpackhi_epi8(row[2], row[3])};
            fours[y / 4][0] = _mm256_unpacklo_epi16(low[0], low[1]);
            fours[y / 4][1] = _mm256_unpackhi_epi16(low[0], low[1]);
            fours[y / 4][2] = _mm256_unpacklo_epi16(high[0], high[1]);
            fours[y / 4][3] = _mm256_unpackhi_epi16(high[0], high[1]);
        }
        for (const RowSum* row = sums; row < sums + count; ++row) {
            __m256i sum[4];
            for (std::size_t i = 0; i < 4; ++i)
                sum[i] = row->isFirst ? _mm256_set1_epi32(1 << (shift - 1))
                                      : load(row->sums + 4 * x + 8 * i);
            for (std::size_t y = 0; y < rowsAtOnce; y += 4) {
                std::int32_t four = 0;
                std::memcpy(&four, row->weights + y, sizeof four);
                const __m256i weights = _mm256_set1_epi32(four);
                // Two weights are 128 at most, so two products are no more than 16 bits.
                for (std::size_t i = 0; i < 4; ++i)
                    sum[i] =
                        addProducts(sum[i], _mm256_maddubs_epi16(fours[y / 4][i], weights), ones);
            }
            if (!row->isLast) {
                for (std::size_t i = 0; i < 4; ++i)
                    store(row->sums + 4 * x + 8 * i, sum[i]);
                continue;
            }
            const __m256i firstTwo = cut(sum[0], sum[1], shift);
            const __m256i lastTwo = cut(sum[2], sum[3], shift);
            store(row->result + 4 * x, _mm256_permute2x128_si256(firstTwo, lastTwo, 0x20));
            store(row->result + 4 * x + 16, _mm256_permute2x128_si256(firstTwo, lastTwo, 0x31));
        }
    }
}

/// As above, with twice the width and four products at once.
[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] void addBytesVnni(
    const std::uint8_t* const* rows, std::int64_t pixels, const RowSum* sums, std::size_t count,
    int bits) {
    const int shift = bits - fractionBits;
    const __m512i firstHalf = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
    const __m512i secondHalf = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    for (std::int64_t x = 0; x < pixels; x += 16) {
        __m512i fours[rowsAtOnce / 4][4];
        for (std::size_t y = 0; y < rowsAtOnce; y += 4) {
            const __m512i row[] {_mm512_loadu_si512(rows[y] + 4 * x),
                _mm512_loadu_si512(rows[y + 1] + 4 * x), _mm512_loadu_si512(rows[y + 2] + 4 * x),
                _mm512_loadu_si512(rows[y + 3] + 4 * x)};
            const __m512i low[] {
                _mm512_unpacklo_epi8(row[0], row[1]), _mm512_unpacklo_epi8(row[2], row[3])};
            const __m512i high[] {
                _mm512_unpackhi_epi8(row[0], row[1]), _mm512_unpackhi_epi8(row[2], row[3])};
            fours[y / 4][0] = _mm512_unpacklo_epi16(low[0], low[1]);
            fours[y / 4][1] = _mm512_unpackhi_epi16(low[0], low[1]);
            fours[y / 4][2] = _mm512_unpacklo_epi16(high[0], high[1]);
            fours[y / 4][3] = _mm512_unpackhi_epi16(high[0], high[1]);
        }
        for (const RowSum* row = sums; row < sums + count; ++row) {
            __m512i sum[4];
            for (std::size_t i = 0; i < 4; ++i)
                sum[i] = row->isFirst ? _mm512_set1_epi32(1 << (shift - 1))
                                      : _mm512_loadu_si512(row->sums + 4 * x + 16 * i);
            for (std::size_t y = 0; y < rowsAtOnce; y += 4) {
                std::int32_t four = 0;
                std::memcpy(&four, row->weights + y, sizeof four);
                const __m512i weights = _mm512_set1_epi32(four);
                for (std::size_t i = 0; i < 4; ++i)
                    sum[i] = _mm512_dpbusd_epi32(sum[i], fours[y / 4][i], weights);
            }
            if (!row->isLast) {
                for (std::size_t i = 0; i < 4; ++i)
                    _mm512_storeu_si512(row->sums + 4 * x + 16 * i, sum[i]);
                continue;
            }
            const __m128i bitsCut = _mm_cvtsi32_si128(shift);
            const __m512i firstTwo = _mm512_packs_epi32(
                _mm512_sra_epi32(sum[0], bitsCut), _mm512_sra_epi32(sum[1], bitsCut));
            const __m512i lastTwo = _mm512_packs_epi32(
                _mm512_sra_epi32(sum[2], bitsCut), _mm512_sra_epi32(sum[3], bitsCut));
            _mm512_storeu_si512(
                row->result + 4 * x, _mm512_permutex2var_epi64(firstTwo, firstHalf, lastTwo));
            _mm512_storeu_si512(
                row->result + 4 * x + 32, _mm512_permutex2var_epi64(firstTwo, secondHalf, lastTwo));
        }
    }
}

[[gnu::target("avx2")]] void widen(
    const std::uint8_t* pixels, std::int64_t count, std::int16_t* result) {
    for (std::int64_t x = 0; x < count; x += 4) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + 4 * x));
        store(result + 4 * x, _mm256_slli_epi16(_mm256_cvtepu8_epi16(bytes), fractionBits));
    }
}

/// Each pair of weights once for each component.
AlignedVector<std::int16_t> arranged(const ResamplingWeights& weights) {
    const auto& values = weights.values();
    AlignedVector<std::int16_t> result;
    result.reserve(4 * values.size());
    for (std::size_t i = 0; i < values.size(); i += 2) {
        for (int component = 0; component < 4; ++component)
            result.insert(result.end(), {values[i], values[i + 1]});
    }
    return result;
}

/// Two sums, one in each part of the vector.
[[gnu::target("avx2")]] inline __m256i sumsAcross(
    const std::int16_t* pixel, const std::int16_t* weight, std::int64_t count) {
    // The components of two pixels side by side.
    const __m256i pairs = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15));
    __m256i sums = _mm256_setzero_si256();
    for (std::int64_t i = 0; i < count; i += 4, pixel += 16, weight += 16)
        sums = addProducts(sums, _mm256_shuffle_epi8(load(pixel), pairs), load(weight));
    return sums;
}

[[gnu::target("avx2")]] inline __m256i joined(__m256i one, __m256i other) {
    return _mm256_add_epi32(
        _mm256_permute2x128_si256(one, other, 0x20), _mm256_permute2x128_si256(one, other, 0x31));
}

[[gnu::target("avx2")]] void addAcross(const std::int16_t* pixels, const ResamplingWeights& weights,
    const std::int16_t* arranged, std::int16_t* result) {
    const auto& taps = weights.taps();
    const __m256i half = _mm256_set1_epi32(1 << (weights.bits() - 1));
    for (std::size_t i = 0; i < taps.size(); i += 4, result += 16) {
        __m256i sums[4];
        for (std::size_t k = 0; k < 4; ++k) {
            const ResamplingWeights::Taps& own = taps[std::min(i + k, taps.size() - 1)];
            sums[k] = sumsAcross(pixels + 4 * (own.first - weights.firstSource()),
                arranged + 4 * own.offset, own.count);
        }
        const __m256i values = cut(_mm256_add_epi32(joined(sums[0], sums[1]), half),
            _mm256_add_epi32(joined(sums[2], sums[3]), half), weights.bits());
        store(result, _mm256_permute4x64_epi64(values, 0b11'01'10'00));
    }
}

[[gnu::target("avx2")]] void addDown(const std::int16_t* const* rows, const std::int16_t* weights,
    std::int64_t count, std::int64_t pixels, std::int16_t* result) {
    for (std::int64_t i = 0; i < 4 * pixels; i += 32) {
        __m256i sum[4];
        std::fill_n(sum, 4, _mm256_set1_epi32(1 << (ResamplingWeights::wideBits - 1)));
        for (std::int64_t y = 0; y < count; y += 2) {
            std::int32_t two = 0;
            std::memcpy(&two, weights + y, sizeof two);
            const __m256i pair = _mm256_set1_epi32(two);
            for (int k = 0; k < 2; ++k) {
                const __m256i one = load(rows[y] + i + 16 * k);
                const __m256i other = load(rows[y + 1] + i + 16 * k);
                sum[2 * k] = addProducts(sum[2 * k], _mm256_unpacklo_epi16(one, other), pair);
                sum[2 * k + 1] =
                    addProducts(sum[2 * k + 1], _mm256_unpackhi_epi16(one, other), pair);
            }
        }
        store(result + i, cut(sum[0], sum[1], ResamplingWeights::wideBits));
        store(result + i + 16, cut(sum[2], sum[3], ResamplingWeights::wideBits));
    }
}

[[gnu::target("avx2")]] void finish(
    const std::int16_t* pixels, std::int64_t count, RowFinish finish, std::uint8_t* result) {
    const __m256i half = _mm256_set1_epi16(1 << (fractionBits - 1));
    const __m256i opaque = _mm256_set1_epi32(finish.isOpaque ? static_cast<int>(0xFF000000) : 0);
    const __m256i alphas = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15));
    const __m256i colors = _mm256_broadcastsi128_si256(finish.swapsRedAndBlue
            ? _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15)
            : _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    for (std::int64_t i = 0; i < 4 * count; i += 32) {
        const __m256i one =
            _mm256_srai_epi16(_mm256_adds_epi16(load(pixels + i), half), fractionBits);
        const __m256i other =
            _mm256_srai_epi16(_mm256_adds_epi16(load(pixels + i + 16), half), fractionBits);
        __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(one, other), 0b11'01'10'00);
        bytes = _mm256_or_si256(bytes, opaque);
        bytes = _mm256_min_epu8(bytes, _mm256_shuffle_epi8(bytes, alphas));
        store(result + i, _mm256_shuffle_epi8(bytes, colors));
    }
}

constexpr ResamplingLoops avx2Loops {
    &premultiply, &addBytes, &widen, &arranged, &addAcross, &addDown, &finish};
constexpr ResamplingLoops vnniLoops {
    &premultiply, &addBytesVnni, &widen, &arranged, &addAcross, &addDown, &finish};

} // namespace

std::vector<const ResamplingLoops*> availableLoops() {
    std::vector<const ResamplingLoops*> loops {&portableLoops};
    if (!__builtin_cpu_supports("avx2"))
        return loops;
    loops.push_back(&avx2Loops);
    if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl")
        && __builtin_cpu_supports("avx512vnni"))
        loops.push_back(&vnniLoops);
    return loops;
}

} // namespace kw

#endif
