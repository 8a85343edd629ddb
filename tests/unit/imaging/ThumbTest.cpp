// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/KWFileThumbnail.h>
#include <KWToolkit/imaging/KWImageLoading.h>
#include <KWToolkit/imaging/NSBitmapImageRep+Thumb.h>
#include <KWToolkit/imaging/NSImage+BestRepresentationForSize.h>
#include <KWToolkit/imaging/NSImage+Reflection.h>
#include <KWToolkit/imaging/NSImage+Thumb.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessImageDecoder.h>
#include <tests/unit/imaging/Pictures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace kw {
namespace {

using test::imageOf;
using test::opaqueBitmap;
using test::OtherRep;

std::string sizeOf(const std::shared_ptr<NSBitmapImageRep>& bitmap) {
    return bitmap
        ? std::to_string(bitmap->pixelsWide()) + "x" + std::to_string(bitmap->pixelsHigh())
        : "none";
}

TEST(BestRepresentation, IsTheClosest) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        std::vector<NSSize> sizes;
        NSSize wanted;
        int best;
    } rows[] {
        {{}, {1, 1}, -1},
        {{{9, 9}}, {0, nan}, 0},
        {{{32, 32}, {128, 128}, {512, 512}}, {100, 100}, 1},
        {{{50, 100}, {150, 100}}, {100, 100}, 0},
        {{{32, 32}, {100, 100}}, {0, 0}, 0},
        {{{32, 32}, {100, 100}}, {nan, 100}, 0},
        {{{90000, 1}, {70000, 1}}, {100, 100}, 0},
        {{{-5, 7}, {0, 0}, {-1, 0}}, {1, 1}, 1},
        // Single precision keeps more than this sum, so the later one of the same score wins.
        {{{2.7, 1.33}, {1.33, 2.7}}, {1, 1}, 1},
        {{{1.5, 1.25}, {1.25, 1.5}}, {1, 1}, 0},
    };
    for (const auto& row : rows) {
        NSImage image;
        for (const NSSize size : row.sizes)
            image.addRepresentation(std::make_shared<OtherRep>(size));
        const auto best = bestRepresentationForSize(image, row.wanted);
        const auto& all = image.representations();
        EXPECT_EQ(best, row.best < 0 ? nullptr : all[static_cast<std::size_t>(row.best)])
            << row.wanted.width << ", " << row.best;
    }
}

TEST(BestRepresentation, NoticesChangesOnTheWay) {
    class Changing final : public OtherRep {
    public:
        explicit Changing(NSImage& image)
            : OtherRep({1, 1})
            , m_image(image) { }
        NSSize size() const override {
            m_image.addRepresentation(std::make_shared<OtherRep>(NSSize {2, 2}));
            return {1, 1};
        }

    private:
        NSImage& m_image;
    };
    NSImage image;
    image.addRepresentation(std::make_shared<Changing>(image));
    image.addRepresentation(std::make_shared<OtherRep>(NSSize {2, 2}));
    EXPECT_THROW(bestRepresentationForSize(image, {2, 2}), NSException);
}

TEST(Thumb, TakesSizesInPoints) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        NSSize size;
        const char *plain, *square;
    } rows[] {
        {{99.9, 50.9}, "99x49", "99x50"},
        {{0.5, 10}, "none", "none"},
        {{0, 10}, "none", "none"},
        {{10, -1}, "none", "none"},
        {{nan, 10}, "none", "none"},
        {{10, nan}, "none", "none"},
        {{10, 1e300}, "none", "none"},
        {{1e18, 1e18}, "none", "none"},
    };
    for (const auto& row : rows) {
        const auto bitmap = opaqueBitmap(200, 100);
        EXPECT_EQ(sizeOf(thumbForSize(*bitmap, row.size, true)), row.plain) << row.size.width;
        EXPECT_EQ(sizeOf(squareThumbForSize(*bitmap, row.size, true)), row.square)
            << row.size.width;
    }
    const auto bitmap = opaqueBitmap(4, 4);
    EXPECT_EQ(thumbForSize(*bitmap, {2, 2}, false, 0.25F)->bitmapData()[3], 63);
    bitmap->setSize({4, 0});
    EXPECT_EQ(thumbForSize(*bitmap, {2, 2}, false), nullptr);
}

// What the short forms leave out, and the long ones pass on.
TEST(Thumb, IsTheScaledImage) {
    const auto bitmap = NSBitmapImageRep::initWithCGImage(
        imageOf(CGImageLayout::premultipliedRGBA(31, 23), test::randomRGBA(31 * 23, 2)));
    NSImage image;
    image.addRepresentation(bitmap);
    HeadlessImageDecoder decoder;
    const ServiceScope scope(decoder);
    decoder.pictures["a"] = {bitmap->CGImage()};
    const auto scaled = [&](bool keepsSquare, double alpha, int quality) {
        return kwCreateScaledCGImageFromCGImage(
            bitmap->CGImage(), 12, 9, true, true, keepsSquare, alpha, quality);
    };
    const auto ofImage = [](const std::shared_ptr<NSImage>& thumb) {
        return std::dynamic_pointer_cast<NSBitmapImageRep>(thumb->representations().at(0));
    };
    const NSSize size {12, 9};
    const auto sent = [&](const char* message, auto... alpha) {
        return std::dynamic_pointer_cast<NSBitmapImageRep>(
            send<std::shared_ptr<NSObject>>(*bitmap, SEL(message), size, true, alpha...));
    };
    const auto low = NSImageInterpolationLow;
    struct {
        std::shared_ptr<NSBitmapImageRep> thumb;
        CGImageRef expected;
    } rows[] {
        {thumbForSize(*bitmap, size, true), scaled(false, 1, 3)},
        {thumbForSize(*bitmap, size, true, 0.5F), scaled(false, 0.5, 3)},
        {squareThumbForSize(*bitmap, size, true), scaled(true, 1, 3)},
        {ofImage(thumbForSize(image, size, true)), scaled(false, 1, 3)},
        {ofImage(thumbForSize(image, size, true, 0.5F)), scaled(false, 0.5, 3)},
        {ofImage(squareThumbForSize(image, size, true)), scaled(true, 1, 3)},
        {ofImage(thumbForSize(image, size, true, true, low, true, false, 0.25F)),
            scaled(true, 0.25, low)},
        {sent("thumbForSize:preserveRatio:alpha:", 0.5F), scaled(false, 0.5, 3)},
        {sent("thumbForSize:preserveRatio:"), scaled(false, 1, 3)},
        {sent("squareThumbForSize:preserveRatio:"), scaled(true, 1, 3)},
        {thumbFromFile("a", {12, 8}, true, false, low, true, false, 0.25F),
            kwCreateScaledCGImageFromCGImage(
                bitmap->CGImage(), 11, 8, false, true, false, 0.25, low)},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(row.thumb && row.expected);
        ASSERT_EQ(row.thumb->layout(), row.expected->layout());
        EXPECT_TRUE(std::equal(row.expected->row(0), row.expected->row(row.expected->height()),
            row.thumb->bitmapData()))
            << &row - rows;
    }
}

TEST(Thumb, OfAnImageIsThatOfTheBestRepresentation) {
    NSImage image;
    for (const std::int64_t side : {16, 64})
        image.addRepresentation(opaqueBitmap(side, side));
    const auto thumb = squareThumbForSize(image, {60, 30}, true);
    ASSERT_EQ(thumb->representations().size(), 1U);
    EXPECT_EQ(thumb->size(), (NSSize {60, 30}));
    EXPECT_TRUE(thumbForSize(image, {0, 30}, true)->representations().empty());
    EXPECT_TRUE(thumbForSize(NSImage(), {30, 30}, true, 0.5F)->representations().empty());

    image.addRepresentation(std::make_shared<OtherRep>(NSSize {30, 30}));
    EXPECT_THROW(thumbForSize(image, {30, 30}, true), NSException);
}

// The stored picture is a row of 10, 20 and 30 over one of 40, 50 and 60.
TEST(FileThumbnail, IsUprightWithinItsBox) {
    const CGImageLayout layout {.width = 3,
        .height = 2,
        .bitsPerPixel = 8,
        .bytesPerRow = 3,
        .colorSpace = CGColorSpace::deviceGray,
        .alphaInfo = CGImageAlphaInfo::none};
    struct {
        ImageOrientation orientation;
        std::int64_t width;
        std::vector<int> reds;
    } rows[] {
        {1, 3, {10, 20, 30, 40, 50, 60}},
        {2, 3, {30, 20, 10, 60, 50, 40}},
        {3, 3, {60, 50, 40, 30, 20, 10}},
        {4, 3, {40, 50, 60, 10, 20, 30}},
        {5, 2, {10, 40, 20, 50, 30, 60}},
        {6, 2, {40, 10, 50, 20, 60, 30}},
        {7, 2, {60, 30, 50, 20, 40, 10}},
        {8, 2, {30, 60, 20, 50, 10, 40}},
    };
    HeadlessImageDecoder decoder;
    const ServiceScope scope(decoder);
    for (const auto& row : rows) {
        decoder.pictures["a"] = {imageOf(layout, {10, 20, 30, 40, 50, 60}), row.orientation};
        const auto thumb = thumbFromFile("a", {100, 100});
        ASSERT_EQ(thumb->pixelsWide(), row.width);
        std::vector<int> reds;
        for (std::size_t i = 0; i < 6; ++i)
            reds.push_back(thumb->bitmapData()[4 * i]);
        EXPECT_EQ(reds, row.reds) << row.orientation;
    }
    decoder.pictures["a"].orientation = 9;
    EXPECT_EQ(sizeOf(thumbFromFile("a", {100, 100})), "3x2");
}

TEST(FileThumbnail, FitsItsBox) {
    HeadlessImageDecoder decoder;
    const ServiceScope scope(decoder);
    const CGImageLayout deep {.width = 400,
        .height = 100,
        .bitsPerComponent = 16,
        .bitsPerPixel = 64,
        .bytesPerRow = 3200,
        .alphaInfo = CGImageAlphaInfo::last};
    decoder.pictures["wide"] = {imageOf(deep, std::vector<std::uint8_t>(320000, 0x80))};
    decoder.pictures["turned"] = {decoder.pictures["wide"].image, 6};
    struct {
        const char* file;
        NSSize box;
        bool preservesRatio, keepsSquare;
        const char* size;
        PixelSize wanted; // as stored
    } rows[] {
        {"wide", {100, 100}, true, false, "100x25", {200, 50}},
        {"turned", {100, 100}, true, false, "25x100", {200, 50}},
        {"turned", {100.9, 50}, true, true, "100x50", {100, 26}},
        {"turned", {30, 20}, false, false, "30x20", {40, 60}},
        {"wide", {999, 999}, true, false, "400x100", {800, 200}},
        {"wide", {1, 1}, true, false, "1x1", {2, 2}}, {"wide", {0.5, 1}, true, false, "none", {}},
        {"wide", {std::nan(""), 1}, true, false, "none", {}},
        {"none", {10, 10}, true, false, "none", {}},
        {"wide", {0x1p31, 0x1p31}, true, true, "none", {}}, // no canvas
    };
    for (const auto& row : rows) {
        decoder.lastWantedSize = {};
        EXPECT_EQ(sizeOf(thumbFromFile(row.file, row.box, row.preservesRatio, row.keepsSquare)),
            row.size);
        EXPECT_EQ(decoder.lastWantedSize, row.wanted) << row.file << " " << row.size;
    }
    // Half transparent gray, and in the middle of its canvas.
    const auto thumb = thumbFromFile("wide", {40, 40}, true, true);
    EXPECT_EQ(thumb->bitmapData()[4 * (15 * 40) - 1], 0);
    EXPECT_EQ(thumb->bitmapData()[4 * (15 * 40)], 64);
    EXPECT_EQ(thumb->bitmapData()[4 * (25 * 40) - 1], 128);
    EXPECT_EQ(thumb->bitmapData()[4 * (25 * 40) + 3], 0);
    EXPECT_EQ(CreateCGImageFromFile("wide")->bitsPerComponent(), 16);
    EXPECT_EQ(CreateCGImageFromData("wide"), decoder.pictures["wide"].image);
    EXPECT_EQ(CreateCGImageFromFile("none"), nullptr);
}

// Each row of the source is as bright as it is far down.
TEST(Reflection, FadesAMirrorImage) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        float amount;
        bool isFlipped;
        std::vector<int> reds, alphas; // by row
    } rows[] {
        // Opacities 0.05, 0.15, 0.275 and 0.425 in the middle of each row.
        {0.5F, false, {12, 31, 48, 62, 0, 0, 0, 0}, {13, 38, 70, 108, 0, 0, 0, 0}},
        {0.5F, true, {0, 0, 0, 0, 6, 13, 15, 11}, {0, 0, 0, 0, 13, 38, 70, 108}},
        {0, false, std::vector<int>(8), std::vector<int>(8)},
        {-1, false, std::vector<int>(8), std::vector<int>(8)},
        {static_cast<float>(nan), true, std::vector<int>(8), std::vector<int>(8)},
        {2, true, std::vector<int>(8), std::vector<int>(8)}, // begins beyond the image
        {0.1875F, false, {31, 41, 0, 0, 0, 0, 0, 0},
            {34, 51, 0, 0, 0, 0, 0, 0}}, // a row and a half
    };
    for (const auto& row : rows) {
        std::vector<std::uint8_t> bytes;
        for (std::uint8_t y = 0; y < 8; ++y)
            bytes.insert(bytes.end(), {static_cast<std::uint8_t>(26 + 30 * y), 9, 9, 255});
        const auto bitmap = NSBitmapImageRep::initWithCGImage(
            imageOf(CGImageLayout::premultipliedRGBA(1, 8), bytes));
        NSImage image({0.5, 4});
        image.addRepresentation(opaqueBitmap(1, 1)); // a coarser one
        image.addRepresentation(bitmap);
        image.setFlipped(row.isFlipped);
        const auto reflection = reflectedImageWithAmountReflected(image, row.amount);
        EXPECT_TRUE(reflection->isFlipped());
        EXPECT_EQ(reflection->size(), (NSSize {0.5, 4}));
        ASSERT_EQ(reflection->representations().size(), 1U);
        const auto pixels =
            std::dynamic_pointer_cast<NSBitmapImageRep>(reflection->representations()[0])
                ->CGImage();
        std::vector<int> reds, alphas;
        for (std::int64_t y = 0; y < 8; ++y) {
            reds.push_back(pixels->row(y)[0]);
            alphas.push_back(pixels->row(y)[3]);
        }
        EXPECT_EQ(reds, row.reds) << row.amount;
        EXPECT_EQ(alphas, row.alphas) << row.amount;
    }
    EXPECT_TRUE(reflectedImageWithAmountReflected(NSImage({3, 3}), 1)->representations().empty());
}

} // namespace
} // namespace kw
