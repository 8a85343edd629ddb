// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The loops with the wider instructions of the machines that have them.
#ifdef __x86_64__

// g++ 12 takes what its own AVX-512 functions leave undefined on purpose for a mistake (GCC bug
// 105593).
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
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

inline std::int32_t wordAt(const void* bytes) {
    std::int32_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
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

/// Rows lie in pages of their own, where the machine does not look ahead.
inline void prefetch(const std::uint8_t* const* rows, std::int64_t x) {
    constexpr std::int64_t bytesAhead = 512;
    for (std::size_t y = 0; y < rowsAtOnce; ++y)
        _mm_prefetch(reinterpret_cast<const char*>(rows[y] + 4 * x + bytesAhead), _MM_HINT_T0);
}

/// Adds two products for each 32 bits.
[[gnu::target("avx2")]] inline __m256i addProducts(__m256i sums, __m256i values, __m256i weights) {
    return _mm256_add_epi32(sums, _mm256_madd_epi16(values, weights));
}

/// Sums of 32 bits become components.
[[gnu::target("avx2")]] inline __m256i components(__m256i one, __m256i other, float factor) {
    const __m256 factors = _mm256_set1_ps(factor);
    return _mm256_packs_epi32(_mm256_cvtps_epi32(_mm256_mul_ps(_mm256_cvtepi32_ps(one), factors)),
        _mm256_cvtps_epi32(_mm256_mul_ps(_mm256_cvtepi32_ps(other), factors)));
}

[[gnu::target("avx2")]] void addBytes(const std::uint8_t* const* rows, std::int64_t pixels,
    const RowSum* sums, std::size_t count, int weightSum) {
    const float factor = static_cast<float>(1 << fractionBits) / static_cast<float>(weightSum);
    const __m256i zero = _mm256_setzero_si256();
    for (std::int64_t x = 0; x < pixels; x += 8) {
        // The same component of two rows side by side, as words: for the first of each four pixels,
        // then for the second and so on.
        __m256i twos[rowsAtOnce / 2][4];
        prefetch(rows, x);
        for (std::size_t y = 0; y < rowsAtOnce; y += 2) {
            const __m256i one = load(rows[y] + 4 * x);
            const __m256i other = load(rows[y + 1] + 4 * x);
            const __m256i low = _mm256_unpacklo_epi8(one, other);
            const __m256i high = _mm256_unpackhi_epi8(one, other);
            twos[y / 2][0] = _mm256_unpacklo_epi8(low, zero);
            twos[y / 2][1] = _mm256_unpackhi_epi8(low, zero);
            twos[y / 2][2] = _mm256_unpacklo_epi8(high, zero);
            twos[y / 2][3] = _mm256_unpackhi_epi8(high, zero);
        }
        for (const RowSum* row = sums; row < sums + count; ++row) {
            __m256i sum[4];
            for (std::size_t i = 0; i < 4; ++i)
                sum[i] = row->isFirst ? zero : load(row->sums + 4 * x + 8 * i);
            for (std::size_t y = 0; y < rowsAtOnce; y += 2) {
                const __m256i weights = _mm256_set1_epi32(wordAt(row->wordWeights + y));
                for (std::size_t i = 0; i < 4; ++i)
                    sum[i] = addProducts(sum[i], twos[y / 2][i], weights);
            }
            if (!row->isLast) {
                for (std::size_t i = 0; i < 4; ++i)
                    store(row->sums + 4 * x + 8 * i, sum[i]);
                continue;
            }
            const __m256i firstTwo = components(sum[0], sum[1], factor);
            const __m256i lastTwo = components(sum[2], sum[3], factor);
            store(row->result + 4 * x, _mm256_permute2x128_si256(firstTwo, lastTwo, 0x20));
            store(row->result + 4 * x + 16, _mm256_permute2x128_si256(firstTwo, lastTwo, 0x31));
        }
    }
}

[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] inline __m512i componentsVnni(
    __m512i one, __m512i other, float factor) {
    const __m512 factors = _mm512_set1_ps(factor);
    return _mm512_packs_epi32(_mm512_cvtps_epi32(_mm512_mul_ps(_mm512_cvtepi32_ps(one), factors)),
        _mm512_cvtps_epi32(_mm512_mul_ps(_mm512_cvtepi32_ps(other), factors)));
}

/// As above, with twice the width and four products at once.
[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] void addBytesVnni(
    const std::uint8_t* const* rows, std::int64_t pixels, const RowSum* sums, std::size_t count,
    int weightSum) {
    const float factor = static_cast<float>(1 << fractionBits) / static_cast<float>(weightSum);
    const __m512i firstHalf = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
    const __m512i secondHalf = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    for (std::int64_t x = 0; x < pixels; x += 16) {
        __m512i fours[rowsAtOnce / 4][4];
        prefetch(rows, x);
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
                sum[i] = row->isFirst ? _mm512_setzero_si512()
                                      : _mm512_loadu_si512(row->sums + 4 * x + 16 * i);
            for (std::size_t y = 0; y < rowsAtOnce; y += 4) {
                const __m512i weights = _mm512_set1_epi32(wordAt(row->weights + y));
                for (std::size_t i = 0; i < 4; ++i)
                    sum[i] = _mm512_dpbusd_epi32(sum[i], fours[y / 4][i], weights);
            }
            if (!row->isLast) {
                for (std::size_t i = 0; i < 4; ++i)
                    _mm512_storeu_si512(row->sums + 4 * x + 16 * i, sum[i]);
                continue;
            }
            const __m512i firstTwo = componentsVnni(sum[0], sum[1], factor);
            const __m512i lastTwo = componentsVnni(sum[2], sum[3], factor);
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
    const int bits = bitsOf(weights);
    const __m256i half = _mm256_set1_epi32(1 << (bits - 1));
    for (std::size_t i = 0; i < taps.size(); i += 4, result += 16) {
        __m256i sums[4];
        for (std::size_t k = 0; k < 4; ++k) {
            const ResamplingWeights::Taps& own = taps[std::min(i + k, taps.size() - 1)];
            sums[k] = sumsAcross(pixels + 4 * (own.first - weights.firstSource()),
                arranged + 4 * own.offset, own.count);
        }
        const __m256i values = cut(_mm256_add_epi32(joined(sums[0], sums[1]), half),
            _mm256_add_epi32(joined(sums[2], sums[3]), half), bits);
        store(result, _mm256_permute4x64_epi64(values, 0b11'01'10'00));
    }
}

/// As above, with twice the width: four sums each.
[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] inline __m512i sumsAcrossVnni(
    __m512i sums, const std::int16_t* pixel, const std::int16_t* weight) {
    const __m512i pairs =
        _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15));
    return _mm512_dpwssd_epi32(
        sums, _mm512_shuffle_epi8(_mm512_loadu_si512(pixel), pairs), _mm512_load_si512(weight));
}

[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] inline __m512i joinedVnni(
    __m512i one, __m512i other) {
    return _mm512_add_epi32(_mm512_shuffle_i32x4(one, other, 0b10'00'10'00),
        _mm512_shuffle_i32x4(one, other, 0b11'01'11'01));
}

[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] void addAcrossVnni(
    const std::int16_t* pixels, const ResamplingWeights& weights, const std::int16_t* arranged,
    std::int16_t* result) {
    const int bits = bitsOf(weights);
    const __m512i half = _mm512_set1_epi32(1 << (bits - 1));
    const __m128i shift = _mm_cvtsi32_si128(bits);
    const auto& taps = weights.taps();
    const std::int64_t origin = weights.firstSource();
    const bool isOneStep = weights.maximumCount() <= 8;
    for (std::size_t i = 0; i < taps.size(); i += 4, result += 16) {
        __m512i sums[4];
#pragma GCC unroll 4
        for (std::size_t k = 0; k < 4; ++k) {
            const ResamplingWeights::Taps& own = taps[std::min(i + k, taps.size() - 1)];
            const std::int16_t* const pixel = pixels + 4 * (own.first - origin);
            const std::int16_t* const weight = arranged + 4 * own.offset;
            sums[k] = sumsAcrossVnni(_mm512_setzero_si512(), pixel, weight);
            if (isOneStep)
                continue;
            for (std::int64_t step = 8; step < own.count; step += 8)
                sums[k] = sumsAcrossVnni(sums[k], pixel + 4 * step, weight + 4 * step);
        }
        const __m512i sum = joinedVnni(joinedVnni(sums[0], sums[1]), joinedVnni(sums[2], sums[3]));
        store(result, _mm512_cvtsepi32_epi16(_mm512_sra_epi32(_mm512_add_epi32(sum, half), shift)));
    }
}

[[gnu::target("avx2")]] void interleave(
    const std::int16_t* one, const std::int16_t* other, std::int64_t pixels, std::int16_t* result) {
    for (std::int64_t i = 0; i < 4 * pixels; i += 16) {
        const __m256i low = _mm256_unpacklo_epi16(load(one + i), load(other + i));
        const __m256i high = _mm256_unpackhi_epi16(load(one + i), load(other + i));
        store(result + 2 * i, _mm256_permute2x128_si256(low, high, 0x20));
        store(result + 2 * i + 16, _mm256_permute2x128_si256(low, high, 0x31));
    }
}

/// How a row is finished, as vectors.
struct Finish {
    [[gnu::target("avx2")]] explicit Finish(RowFinish finish)
        : opaque(_mm_set1_epi32(finish.isOpaque ? static_cast<int>(0xFF000000) : 0))
        , colors(finish.swapsRedAndBlue
                  ? _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15)
                  : _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15)) { }

    __m128i opaque;
    __m128i colors;
};

[[gnu::target("avx2")]] inline __m128i alphaOfEach() {
    return _mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
}

/// Bytes of pixels, in the order in which their parts are packed.
[[gnu::target("avx2")]] inline __m256i finished(__m256i one, __m256i other, const Finish& finish) {
    const __m256i half = _mm256_set1_epi16(1 << (fractionBits - 1));
    const __m256i bytes = _mm256_or_si256(
        _mm256_packus_epi16(_mm256_srai_epi16(_mm256_adds_epi16(one, half), fractionBits),
            _mm256_srai_epi16(_mm256_adds_epi16(other, half), fractionBits)),
        _mm256_broadcastsi128_si256(finish.opaque));
    const __m256i alphas = _mm256_shuffle_epi8(bytes, _mm256_broadcastsi128_si256(alphaOfEach()));
    return _mm256_shuffle_epi8(
        _mm256_min_epu8(bytes, alphas), _mm256_broadcastsi128_si256(finish.colors));
}

[[gnu::target("avx2")]] void finish(
    const std::int16_t* pixels, std::int64_t count, RowFinish rowFinish, std::uint8_t* result) {
    const Finish finish(rowFinish);
    for (std::int64_t i = 0; i < 4 * count; i += 32)
        store(result + i,
            _mm256_permute4x64_epi64(
                finished(load(pixels + i), load(pixels + i + 16), finish), 0b11'01'10'00));
}

[[gnu::target("avx2")]] void addDown(const std::int16_t* const* pairs, const std::int16_t* weights,
    std::int64_t count, int bits, std::int64_t pixels, RowFinish rowFinish, std::uint8_t* result) {
    const Finish finish(rowFinish);
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    for (std::int64_t i = 0; i < 4 * pixels; i += 32) {
        __m256i sum[4];
        std::fill_n(sum, 4, _mm256_set1_epi32(1 << (bits - 1)));
        for (std::int64_t pair = 0; pair < count; ++pair) {
            const __m256i two = _mm256_set1_epi32(wordAt(weights + 2 * pair));
            for (std::int64_t k = 0; k < 4; ++k)
                sum[k] = addProducts(sum[k], load(pairs[pair] + 2 * i + 16 * k), two);
        }
        store(result + i,
            _mm256_permutevar8x32_epi32(
                finished(cut(sum[0], sum[1], bits), cut(sum[2], sum[3], bits), finish), order));
    }
}

/// As above, with twice the width.
[[gnu::target("avx2,avx512f,avx512bw,avx512vl,avx512vnni")]] void addDownVnni(
    const std::int16_t* const* pairs, const std::int16_t* weights, std::int64_t count, int bits,
    std::int64_t pixels, RowFinish rowFinish, std::uint8_t* result) {
    const Finish finish(rowFinish);
    const __m512i opaque = _mm512_broadcast_i32x4(finish.opaque);
    const __m512i colors = _mm512_broadcast_i32x4(finish.colors);
    const __m512i alphaOf = _mm512_broadcast_i32x4(alphaOfEach());
    const __m512i half = _mm512_set1_epi16(1 << (fractionBits - 1));
    const __m512i order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    for (std::int64_t i = 0; i < 4 * pixels; i += 64) {
        __m512i sum[4];
        for (__m512i& part : sum)
            part = _mm512_set1_epi32(1 << (bits - 1));
        for (std::int64_t pair = 0; pair < count; ++pair) {
            const __m512i two = _mm512_set1_epi32(wordAt(weights + 2 * pair));
            for (std::int64_t k = 0; k < 4; ++k)
                sum[k] = _mm512_dpwssd_epi32(
                    sum[k], _mm512_loadu_si512(pairs[pair] + 2 * i + 32 * k), two);
        }
        for (__m512i& part : sum)
            part = _mm512_sra_epi32(part, _mm_cvtsi32_si128(bits));
        const __m512i one = _mm512_adds_epi16(_mm512_packs_epi32(sum[0], sum[1]), half);
        const __m512i other = _mm512_adds_epi16(_mm512_packs_epi32(sum[2], sum[3]), half);
        __m512i bytes = _mm512_packus_epi16(
            _mm512_srai_epi16(one, fractionBits), _mm512_srai_epi16(other, fractionBits));
        bytes = _mm512_or_si512(bytes, opaque);
        bytes = _mm512_min_epu8(bytes, _mm512_shuffle_epi8(bytes, alphaOf));
        _mm512_storeu_si512(
            result + i, _mm512_permutexvar_epi32(order, _mm512_shuffle_epi8(bytes, colors)));
    }
}

constexpr ResamplingLoops avx2Loops {
    &premultiply, &addBytes, &widen, &arranged, &addAcross, &interleave, &finish, &addDown};
constexpr ResamplingLoops vnniLoops {&premultiply, &addBytesVnni, &widen, &arranged, &addAcrossVnni,
    &interleave, &finish, &addDownVnni};

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
