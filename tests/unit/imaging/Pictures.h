// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/CGImage.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace kw::test {

inline CGImageRef imageOf(const CGImageLayout& layout, std::vector<std::uint8_t> bytes) {
    const auto kept = std::make_shared<std::vector<std::uint8_t>>(std::move(bytes));
    return CGImage::create(layout, std::shared_ptr<const std::uint8_t[]>(kept, kept->data()));
}

/// Premultiplied, so that no color exceeds its alpha.
inline std::vector<std::uint8_t> randomRGBA(std::int64_t pixels, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(4 * pixels));
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        const unsigned alpha = random() % 4 == 0 ? random() % 256 : 255;
        for (std::size_t k = 0; k < 3; ++k)
            bytes[i + k] = static_cast<std::uint8_t>(random() % (alpha + 1));
        bytes[i + 3] = static_cast<std::uint8_t>(alpha);
    }
    return bytes;
}

inline std::shared_ptr<NSBitmapImageRep> opaqueBitmap(std::int64_t width, std::int64_t height) {
    const auto layout = CGImageLayout::premultipliedRGBA(width, height);
    return NSBitmapImageRep::initWithCGImage(imageOf(layout,
        std::vector<std::uint8_t>(
            static_cast<std::size_t>(layout.byteCount()), std::uint8_t {255})));
}

/// Answers to no message of a bitmap.
class OtherRep : public NSImageRep {
public:
    explicit OtherRep(NSSize size)
        : NSImageRep(size) { }
};

} // namespace kw::test
