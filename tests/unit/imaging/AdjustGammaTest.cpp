// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSImage+AdjustGamma.h>

#include <KWToolkit/platform/foundation/NSException.h>
#include <tests/unit/imaging/Pictures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace kw {
namespace {

using test::imageOf;
using enum CGImageAlphaInfo;

CGImageLayout layoutOf(std::int64_t width, std::int64_t height, int bitsPerPixel,
    CGImageAlphaInfo alpha, std::int64_t rowPixels = 0, int bits = 8,
    CGImageByteOrder order = CGImageByteOrder::big) {
    return {.width = width,
        .height = height,
        .bitsPerComponent = bits,
        .bitsPerPixel = bitsPerPixel,
        .bytesPerRow = std::max(width, rowPixels) * bitsPerPixel / 8,
        .alphaInfo = alpha,
        .byteOrder = order};
}

std::vector<std::uint8_t> adjusted(const CGImageLayout& layout, std::vector<std::uint8_t> bytes,
    float value, const GammaTable* table) {
    const auto bitmap = NSBitmapImageRep::initWithCGImage(imageOf(layout, std::move(bytes)));
    adjustGammaWithValue(*bitmap, value, table);
    return {bitmap->bitmapData(), bitmap->bitmapData() + layout.byteCount()};
}

/// The walk in its own words: column by column, each pixel read as it then is.
void walk(NSBitmapImageRep& bitmap, float value, const GammaTable* table) {
    const CGImageLayout& layout = bitmap.layout();
    const auto bpp = static_cast<float>(layout.bitsPerPixel);
    const auto quarter = static_cast<float>(layout.bitsPerPixel / 4);
    const auto perRow = static_cast<int>(layout.bytesPerRow / (layout.bitsPerPixel / 8));
    for (int x = 0; x < layout.width; ++x) {
        for (int y = 0; y < layout.height; ++y) {
            const std::uint8_t* const bytes = bitmap.bitmapData();
            float channels[4];
            for (int k = 0; k < 4; ++k) {
                volatile float offset = static_cast<float>(x + y * perRow) * bpp;
                offset = offset + static_cast<float>(k) * quarter;
                const auto position = static_cast<std::int64_t>(offset) / 8;
                channels[k] = position < layout.byteCount() ? bytes[position] : 0;
            }
            const float scale = 255.0F / channels[3];
            double colors[3];
            for (int k = 0; k < 3; ++k) {
                const float color = channels[k] * scale;
                if (!table) {
                    colors[k] =
                        std::pow(static_cast<double>(color / 255.0F), static_cast<double>(value));
                    continue;
                }
                const int index =
                    std::isfinite(color) ? static_cast<std::int16_t>(static_cast<int>(color)) : 0;
                colors[k] = static_cast<double>(
                    static_cast<float>(
                        (*table)[static_cast<std::size_t>(std::clamp(index, 0, 255))])
                    / 32768.0F);
            }
            bitmap.setColor(NSColor::colorWithCalibratedRed(
                                colors[0], colors[1], colors[2], channels[3] / 255.0),
                x, y);
        }
    }
}

GammaTable fallingRamp() {
    GammaTable table;
    for (std::uint32_t i = 0; i < table.size(); ++i)
        table[i] = 32768 - 128 * i;
    return table;
}

TEST(AdjustGamma, EqualsTheWalk) {
    const GammaTable ramp = fallingRamp();
    constexpr auto little = CGImageByteOrder::little;
    struct {
        CGImageLayout layout;
        float value;
        const GammaTable* table;
    } rows[] {
        {layoutOf(90, 70, 32, premultipliedLast), 2.2F, nullptr},
        {layoutOf(90, 70, 32, premultipliedLast), 0, &ramp},
        {layoutOf(90, 70, 32, premultipliedFirst, 0, 8, little), 0.4F, nullptr},
        {layoutOf(90, 70, 32, first), 1.7F, nullptr},
        {layoutOf(90, 70, 32, last), -1, nullptr},
        {layoutOf(90, 70, 32, noneSkipFirst, 0, 8, little), 3, nullptr},
        {layoutOf(90, 70, 24, none, 101), 2, nullptr},
        {layoutOf(90, 70, 32, noneSkipLast), 3, nullptr},
        {layoutOf(200, 31, 24, none, 559'236), 0, &ramp}, // through bit 2^27 and pixel 2^24
        {layoutOf(7, 700, 32, premultipliedLast, 30'001), 2, nullptr}, // hardly wider than an edge
        {layoutOf(13, 700, 32, premultipliedLast, 30'001), 2, nullptr},
        {layoutOf(30, 20, 64, premultipliedLast, 0, 16, little), 2, nullptr},
        {layoutOf(30, 20, 48, none, 0, 16), 0, &ramp},
        // Rows so far apart that few pixels reach high indices: to 2^22, 2^23, 2^24, 2^25 and on.
        {layoutOf(90, 60, 32, premultipliedLast, 700'001), 2.2F, nullptr},
        {layoutOf(90, 60, 32, premultipliedLast, 700'002), 0, &ramp},
        {layoutOf(90, 60, 32, premultipliedFirst, 123'457, 8, little), 1.5F, nullptr},
        {layoutOf(90, 60, 32, noneSkipFirst, 200'003, 8, little), 1.5F, nullptr},
        {layoutOf(90, 60, 24, none, 500'009), 0.7F, nullptr},
        {layoutOf(6, 40, 64, premultipliedLast, 200'001, 16), 0.7F, nullptr},
        // No padding: what the last columns reach is the next row, changed before.
        {layoutOf(4'300'000, 2, 32, premultipliedLast), 2.2F, nullptr},
    };
    for (const auto& row : rows) {
        const auto one = NSBitmapImageRep::initWithLayout(row.layout);
        const auto other = NSBitmapImageRep::initWithLayout(row.layout);
        std::mt19937 random(12);
        const std::int64_t bytes = row.layout.width * row.layout.bitsPerPixel / 8;
        for (std::int64_t y = 0; y < row.layout.height; ++y) {
            const std::int64_t begin = y * row.layout.bytesPerRow;
            for (std::int64_t i = begin; i < std::min(begin + bytes + 64, row.layout.byteCount());
                ++i)
                one->bitmapData()[i] = other->bitmapData()[i] =
                    static_cast<std::uint8_t>(random() % 3 == 0 ? 255 : random());
        }
        adjustGammaWithValue(*one, row.value, row.table);
        walk(*other, row.value, row.table);
        EXPECT_TRUE(std::equal(
            one->bitmapData(), one->bitmapData() + row.layout.byteCount(), other->bitmapData()))
            << row.layout.width << "x" << row.layout.height << " of " << row.layout.bitsPerPixel
            << " bits, alpha " << static_cast<int>(row.layout.alphaInfo);
    }
}

TEST(AdjustGamma, TakesEveryValue) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const GammaTable ramp = fallingRamp();
    GammaTable marked {};
    marked[0] = 32768;
    struct {
        float value;
        const GammaTable* table;
        std::vector<std::uint8_t> from, to;
    } rows[] {
        {0, nullptr, {128, 1, 2, 255}, {128, 1, 2, 255}},
        {-0.0F, nullptr, {128, 1, 2, 255}, {128, 1, 2, 255}},
        {1, nullptr, {128, 1, 2, 200}, {128, 1, 2, 200}},
        {2, nullptr, {128, 0, 255, 255}, {64, 0, 255, 255}},
        {2, nullptr, {64, 0, 0, 128}, {32, 0, 0, 128}}, // 0.5 squared, times 128
        {infinity, nullptr, {254, 255, 0, 255}, {0, 255, 0, 255}},
        {-infinity, nullptr, {254, 255, 0, 255}, {255, 255, 255, 255}},
        {std::nanf(""), nullptr, {128, 255, 0, 255}, {0, 255, 0, 255}}, // 1 to any power is 1
        {2, nullptr, {0, 7, 255, 0}, {0, 0, 0, 0}}, // without opacity
        {0, &marked, {0, 7, 255, 0}, {0, 0, 0, 0}},
        {5, &ramp, {0, 255, 128, 255}, {255, 1, 128, 255}}, // the value does not count
        {0, &marked, {255, 1, 0, 1}, {1, 0, 1, 1}}, // index 65025 is -511 in 16 bits
    };
    for (const auto& row : rows)
        EXPECT_EQ(adjusted(CGImageLayout::premultipliedRGBA(1, 1), row.from, row.value, row.table),
            row.to)
            << row.value << " of " << int {row.from[0]};
}

TEST(AdjustGamma, LeavesWhatIsNotRGB) {
    CGImageLayout gray = layoutOf(4, 1, 8, none);
    gray.colorSpace = CGColorSpace::deviceGray;
    CGImageLayout cmyk = layoutOf(1, 1, 32, none);
    cmyk.colorSpace = CGColorSpace::deviceCMYK;
    const std::vector<std::uint8_t> bytes {10, 20, 30, 40};
    EXPECT_EQ(adjusted(gray, bytes, 2, nullptr), bytes);
    EXPECT_EQ(adjusted(cmyk, bytes, 2, nullptr), bytes);
}

TEST(AdjustGamma, OfAnImageGoesThroughItsRepresentations) {
    const auto rep = [] {
        return NSBitmapImageRep::initWithCGImage(
            imageOf(CGImageLayout::premultipliedRGBA(1, 1), {128, 128, 128, 255}));
    };
    const auto before = rep(), after = rep();
    const CGImageRef shared = before->CGImage();
    NSImage image;
    image.addRepresentation(before);
    image.addRepresentation(std::make_shared<test::OtherRep>(NSSize {1, 1}));
    image.addRepresentation(after);
    EXPECT_THROW(adjustGammaWithValue(image, 2), NSException);
    EXPECT_EQ(before->bitmapData()[0], 64);
    EXPECT_EQ(after->bitmapData()[0], 128);
    EXPECT_EQ(shared->row(0)[0], 128); // what was handed out does not change
    const GammaTable ramp = fallingRamp();
    EXPECT_THROW(adjustGammaWithArray(image, &ramp), NSException);
    EXPECT_EQ(before->bitmapData()[0], 191);
}

} // namespace
} // namespace kw
