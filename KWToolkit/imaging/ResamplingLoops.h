// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The inner loops of resampling, in the form that the machine runs fastest. All forms give the
// same.
#pragma once

#include <KWToolkit/imaging/ResamplingWeights.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace kw {

// Pixels have four components. Sources and results have them as bytes; in between they are 16 bits
// long, the last six behind the point, so that what overshoots black and white is kept.
inline constexpr int fractionBits = 6;

/// Buffers of rows have room for as many pixels behind the last as the loops read or write there.
inline constexpr std::int64_t rowSlack = 64;

/// So many rows of bytes are added at a time.
inline constexpr std::size_t rowsAtOnce = 16;

/// A row that rows of bytes are added up to.
struct RowSum {
    std::int8_t weights[rowsAtOnce];
    std::int16_t wordWeights[rowsAtOnce]; ///< the same
    bool isFirst; ///< whether there are no sums yet
    bool isLast; ///< whether the result is due, not the sums
    std::int32_t* sums; ///< in the loop's own order
    std::int16_t* result;
};

/// How a finished row is stored. The source may have blue first, and no use of its last byte.
struct RowFinish {
    bool swapsRedAndBlue;
    bool isOpaque;
};

/// Allocates where vectors of every width are aligned.
template <class T>
struct VectorAllocator {
    using value_type = T;
    static constexpr std::align_val_t alignment {64};

    VectorAllocator() = default;
    template <class Other>
    VectorAllocator(const VectorAllocator<Other>&) { }
    T* allocate(std::size_t count) {
        return static_cast<T*>(::operator new(count * sizeof(T), alignment));
    }
    void deallocate(T* memory, std::size_t) { ::operator delete(memory, alignment); }
    friend bool operator==(const VectorAllocator&, const VectorAllocator&) { return true; }
};
template <class T>
using AlignedVector = std::vector<T, VectorAllocator<T>>;

struct ResamplingLoops {
    /// Multiplies the first three of each pixel's components with the last.
    void (*premultiply)(const std::uint8_t* pixels, std::int64_t count, std::uint8_t* result);

    /// Adds rows of bytes to sums, with narrow weights that add up to `weightSum`.
    void (*addBytes)(const std::uint8_t* const* rows, std::int64_t pixels, const RowSum* sums,
        std::size_t count, int weightSum);

    void (*widen)(const std::uint8_t* pixels, std::int64_t count, std::int16_t* result);

    /// The weights in the order in which `addAcross` takes them.
    AlignedVector<std::int16_t> (*arranged)(const ResamplingWeights& weights);
    /// Adds up the pixels of a row, the first of which is the weights' `firstSource`, for each
    /// pixel of the scaled row.
    void (*addAcross)(const std::int16_t* pixels, const ResamplingWeights& weights,
        const std::int16_t* arranged, std::int16_t* result);

    /// Puts two rows' components side by side.
    void (*interleave)(const std::int16_t* one, const std::int16_t* other, std::int64_t pixels,
        std::int16_t* result);
    /// Rounds to bytes, none above its alpha.
    void (*finish)(
        const std::int16_t* pixels, std::int64_t count, RowFinish finish, std::uint8_t* result);
    /// Adds up pairs of rows, with wide weights that add up to 2 to `bits`, and finishes the sums.
    void (*addDown)(const std::int16_t* const* pairs, const std::int16_t* weights,
        std::int64_t count, int bits, std::int64_t pixels, RowFinish finish, std::uint8_t* result);
};

/// Wide weights add up to 2 to this.
inline int bitsOf(const ResamplingWeights& weights) {
    return std::countr_zero(static_cast<unsigned>(weights.sum()));
}

/// In plain C++.
extern const ResamplingLoops portableLoops;
/// Those that this machine runs, the best last.
std::vector<const ResamplingLoops*> availableLoops();
/// The best.
const ResamplingLoops& resamplingLoops();

} // namespace kw
