// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// How pixels are allocated, and read and written whatever their layout.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <cstdint>
#include <memory>

namespace kw {

/// That many bytes, all zero; null where there is no memory for them.
std::shared_ptr<std::uint8_t[]> makePixels(std::int64_t byteCount);
/// The same, whatever was there before.
std::shared_ptr<std::uint8_t[]> makeUnsetPixels(std::int64_t byteCount);

/// A component of a pixel of a row, from 0 to `maximumComponent`.
KW_EXPORT std::uint32_t componentAt(
    const CGImageLayout& layout, const std::uint8_t* row, std::int64_t x, int place);
KW_EXPORT void setComponentAt(
    const CGImageLayout& layout, std::uint8_t* row, std::int64_t x, int place, std::uint32_t value);

constexpr std::uint32_t maximumComponent(int bitsPerComponent) {
    return (std::uint32_t {1} << bitsPerComponent) - 1;
}

/// `a * b / 255`, rounded to the nearest.
constexpr std::uint8_t multiplied(std::uint8_t a, std::uint8_t b) {
    // No longer than it must be: compilers do many of them at once.
    const auto product = static_cast<std::uint16_t>(a * b + 128);
    return static_cast<std::uint8_t>(static_cast<std::uint16_t>(product + (product >> 8)) >> 8);
}

/// Writes pixels of a row, of any layout, as premultiplied RGBA with 8 bits each. An alpha of more
/// than 8 bits is multiplied first and rounded then.
void readPremultipliedRGBA(const CGImageLayout& layout, const std::uint8_t* row, std::int64_t first,
    std::int64_t count, std::uint8_t* rgba);

} // namespace kw
