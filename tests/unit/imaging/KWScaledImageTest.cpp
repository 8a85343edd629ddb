// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/KWScaledImage.h>

#include <KWToolkit/imaging/ResamplingLoops.h>
#include <tests/unit/imaging/Pictures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kw {
namespace {

using test::imageOf;
using test::randomRGBA;

CGImageRef whiteImage(std::int64_t width, std::int64_t height, std::uint8_t value = 255) {
    const auto layout = CGImageLayout::premultipliedRGBA(width, height);
    return imageOf(
        layout, std::vector<std::uint8_t>(static_cast<std::size_t>(layout.byteCount()), value));
}

std::string boundsOf(const CGImage& image) {
    std::int64_t left = image.width(), right = 0, bottom = image.height(), top = 0;
    for (std::int64_t y = 0; y < image.height(); ++y) {
        for (std::int64_t x = 0; x < image.width(); ++x) {
            if (image.row(y)[4 * x + 3] == 0)
                continue;
            left = std::min(left, x);
            right = std::max(right, x + 1);
            bottom = std::min(bottom, image.height() - 1 - y);
            top = std::max(top, image.height() - y);
        }
    }
    if (right == 0)
        return "nothing";
    return std::to_string(left) + "," + std::to_string(bottom) + " " + std::to_string(right - left)
        + "x" + std::to_string(top - bottom);
}

TEST(ScaledImage, LiesWhereTheRuleSays) {
    struct {
        std::int64_t sourceWidth, sourceHeight, width, height;
        bool preservesRatio, keepsSquare;
        std::int64_t canvasWidth, canvasHeight;
        const char* drawn; // lower left corner and size
    } rows[] {
        {200, 100, 100, 100, true, false, 100, 50, "0,0 100x50"},
        {200, 100, 100, 100, true, true, 100, 100, "0,25 100x50"},
        {100, 100, 300, 50, true, false, 50, 50, "0,0 50x50"},
        {100, 100, 300, 50, true, true, 300, 50, "125,0 50x50"},
        {200, 100, 100, 10, true, true, 100, 10, "nothing"},
        {200, 100, 100, 40, true, true, 100, 40, "0,5 100x35"},
        {100, 200, 40, 100, true, true, 40, 100, "5,0 35x100"}, // 50 wide, cut at the right
        {200, 100, 30, 70, false, true, 30, 70, "0,0 30x70"},
        {200, 100, 105, 57, true, true, 105, 57, "0,2 105x52"}, // 5 left over
        {3, 2, 100, 7, true, false, 100, 66, "0,0 100x66"},
        {1, 1000, 100, 100, true, true, 100, 100, "nothing"}, // 0 wide
        {5, 3, 40, 90, false, false, 40, 90, "0,0 40x90"},
    };
    for (const auto& row : rows) {
        const auto image =
            kwCreateScaledCGImageFromCGImage(whiteImage(row.sourceWidth, row.sourceHeight),
                row.width, row.height, row.preservesRatio, true, row.keepsSquare, 1.0, 3);
        ASSERT_TRUE(image) << row.drawn;
        EXPECT_EQ(
            image->layout(), CGImageLayout::premultipliedRGBA(row.canvasWidth, row.canvasHeight));
        EXPECT_EQ(boundsOf(*image), row.drawn) << row.width << "x" << row.height;
    }
}

// Each pixel is as bright as it lies to the right and down.
TEST(ScaledImage, IsCutOffAtTheFarSide) {
    const CGImageLayout layout {.width = 40,
        .height = 20,
        .bitsPerPixel = 24,
        .bytesPerRow = 120,
        .alphaInfo = CGImageAlphaInfo::none};
    std::vector<std::uint8_t> bytes;
    for (std::uint8_t y = 0; y < 20; ++y) {
        for (std::uint8_t x = 0; x < 40; ++x)
            bytes.insert(bytes.end(), {x, y, 0});
    }
    const auto low = kwCreateScaledCGImageFromCGImage(
        imageOf(layout, bytes), 40, 10, true, true, true, 1, NSImageInterpolationNone);
    // 40 by 20 at (0, 5) in 40 by 10: its lowest rows, 5 of them, above 5 empty ones.
    EXPECT_EQ(low->row(0)[1], 15);
    EXPECT_EQ(low->row(4)[1], 19);
    EXPECT_EQ(low->row(5)[3], 0);
    EXPECT_EQ(low->row(4)[4 * 39], 39);
}

TEST(ScaledImage, IsNullWhereThereIsNoCanvas) {
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    struct {
        CGImageRef image;
        std::int64_t width, height;
        bool preservesRatio, keepsSquare;
    } rows[] {
        {nullptr, 10, 10, false, false},
        {whiteImage(4, 4), 0, 10, false, false},
        {whiteImage(4, 4), 10, -1, false, true},
        {whiteImage(4, 3), huge, 1, true, false},
        {whiteImage(4, 4), 1, huge, true, true},
        {whiteImage(4, 4), huge, huge, false, true},
        {whiteImage(4, 4), -huge - 1, -huge - 1, true, true},
        {whiteImage(4, 4), 1 << 16, 1 << 16, false, false},
        {whiteImage(1, 1000), 100, 100, true, false},
        {imageOf({.width = 2,
                     .height = 1,
                     .bitsPerComponent = 16,
                     .bitsPerPixel = 64,
                     .bytesPerRow = 16},
             std::vector<std::uint8_t>(16)),
            2, 2, false, false},
        {imageOf({.width = 8,
                     .height = 1,
                     .bitsPerComponent = 1,
                     .bitsPerPixel = 1,
                     .bytesPerRow = 1,
                     .colorSpace = CGColorSpace::deviceGray,
                     .alphaInfo = CGImageAlphaInfo::none},
             {0x55}),
            2, 2, false, false},
    };
    for (const auto& row : rows)
        EXPECT_FALSE(kwCreateScaledCGImageFromCGImage(
            row.image, row.width, row.height, row.preservesRatio, true, row.keepsSquare, 1.0, 3))
            << row.width << "x" << row.height;
}

std::vector<int> reds(const CGImageRef& image) {
    std::vector<int> reds;
    for (std::int64_t x = 0; x < image->width(); ++x)
        reds.push_back(image->row(0)[4 * x]);
    return reds;
}

TEST(ScaledImage, InterpolatesAsAskedFor) {
    const auto row = imageOf({.width = 4,
                                 .height = 1,
                                 .bitsPerPixel = 8,
                                 .bytesPerRow = 4,
                                 .colorSpace = CGColorSpace::deviceGray,
                                 .alphaInfo = CGImageAlphaInfo::none},
        {90, 100, 20, 200});
    CGImageLayout columnLayout = row->layout();
    std::swap(columnLayout.width, columnLayout.height);
    columnLayout.bytesPerRow = 1;
    const auto column = imageOf(columnLayout, {90, 100, 20, 200});
    // In either direction.
    const auto scaled = [&](std::int64_t side, std::int32_t quality, double alpha = 1) {
        auto across =
            kwCreateScaledCGImageFromCGImage(row, side, 1, false, true, false, alpha, quality);
        const auto down =
            kwCreateScaledCGImageFromCGImage(column, 1, side, false, true, false, alpha, quality);
        EXPECT_TRUE(std::equal(across->row(0), across->row(1), down->row(0))) << side;
        return across;
    };
    using Reds = std::vector<int>;
    EXPECT_EQ(reds(scaled(2, NSImageInterpolationNone)), (Reds {100, 200}));
    EXPECT_EQ(
        reds(scaled(8, NSImageInterpolationNone)), (Reds {90, 90, 100, 100, 20, 20, 200, 200}));
    EXPECT_EQ(reds(scaled(8, NSImageInterpolationLow)), (Reds {90, 93, 98, 80, 40, 65, 155, 200}));
    EXPECT_EQ(reds(scaled(2, NSImageInterpolationLow)), (Reds {95, 110}));
    EXPECT_EQ(reds(scaled(1, NSImageInterpolationLow)), (Reds {60})); // the middle two
    EXPECT_EQ(reds(scaled(1, NSImageInterpolationMedium)), (Reds {103}));
    EXPECT_EQ(reds(scaled(3, NSImageInterpolationMedium)), (Reds {93, 60, 155}));
    EXPECT_EQ(
        reds(scaled(8, NSImageInterpolationMedium)), reds(scaled(8, NSImageInterpolationLow)));
    for (const std::int32_t unknown : {0, 5, -1, 1 << 30})
        EXPECT_EQ(reds(scaled(8, unknown)), reds(scaled(8, NSImageInterpolationLow)));
    EXPECT_EQ(reds(scaled(4, NSImageInterpolationHigh)), (Reds {90, 100, 20, 200}));
    // Never more than half; and what is no opacity is none.
    EXPECT_EQ(reds(scaled(4, NSImageInterpolationHigh, 0.5)), (Reds {45, 50, 10, 100}));
    EXPECT_EQ(scaled(4, 3, 0.5)->row(0)[3], 127);
    EXPECT_EQ(reds(scaled(4, 3, std::nan(""))), (Reds {0, 0, 0, 0}));
    EXPECT_EQ(reds(scaled(4, 3, 7)), (Reds {90, 100, 20, 200}));
}

double lanczos(double x) {
    if (x == 0)
        return 1;
    return std::fabs(x) >= 3
        ? 0
        : 3 * std::sin(M_PI * x) * std::sin(M_PI * x / 3) / (M_PI * M_PI * x * x);
}

/// By the formula, of the values `stride` apart.
std::vector<double> formula(
    const std::vector<double>& values, std::size_t stride, std::int64_t from, std::int64_t to) {
    const double scale = static_cast<double>(from) / static_cast<double>(to);
    const double width = std::max(1.0, scale);
    std::vector<double> result(
        values.size() / static_cast<std::size_t>(from) * static_cast<std::size_t>(to));
    for (std::size_t line = 0; line < values.size() / static_cast<std::size_t>(from); ++line) {
        const std::size_t begin =
            line / stride * stride * static_cast<std::size_t>(from) + line % stride;
        const std::size_t end =
            line / stride * stride * static_cast<std::size_t>(to) + line % stride;
        for (std::int64_t i = 0; i < to; ++i) {
            double sum = 0, weights = 0;
            for (std::int64_t k = 0; k < from; ++k) {
                const double weight =
                    lanczos((static_cast<double>(k) + 0.5 - (static_cast<double>(i) + 0.5) * scale)
                        / width);
                sum += weight * values[begin + static_cast<std::size_t>(k) * stride];
                weights += weight;
            }
            result[end + static_cast<std::size_t>(i) * stride] = sum / weights;
        }
    }
    return result;
}

/// Of what a picture is made.
enum class Content { noise, rows, columns };

std::vector<std::uint8_t> pictureOf(Content content, std::int64_t width, std::int64_t height) {
    auto bytes = randomRGBA(width * height, 7);
    for (std::size_t i = 0; content != Content::noise && i < bytes.size(); ++i) {
        const std::size_t x = i / 4 % static_cast<std::size_t>(width);
        const std::size_t y = i / 4 / static_cast<std::size_t>(width);
        const bool isWhite = (content == Content::rows ? y : x) % 2 == 0 || i % 4 == 3;
        bytes[i] = isWhite ? 255 : 0;
    }
    return bytes;
}

// Noise and stripes are the hardest; pictures come to 60.
TEST(ScaledImage, IsCloseToTheFormula) {
    struct {
        std::int64_t width, height, newWidth, newHeight;
        Content content = Content::noise;
        double decibels = 52;
    } rows[] {{20, 1000, 20, 110, Content::rows, 50}, {1000, 20, 110, 20, Content::columns, 52},
        {200, 160, 19, 15}, {97, 203, 60, 31}, {17, 23, 40, 61}, {64, 64, 64, 5}, {30, 300, 90, 7},
        {300, 30, 9, 41}, {1, 700, 3, 1}, {160, 160, 20, 20}};
    for (const auto& row : rows) {
        const auto bytes = pictureOf(row.content, row.width, row.height);
        auto expected = formula({bytes.begin(), bytes.end()}, 4, row.width, row.newWidth);
        expected = formula(
            expected, static_cast<std::size_t>(4 * row.newWidth), row.height, row.newHeight);
        const auto image = kwCreateScaledCGImageFromCGImage(
            imageOf(CGImageLayout::premultipliedRGBA(row.width, row.height), bytes), row.newWidth,
            row.newHeight, false, true, false, 1.0, NSImageInterpolationHigh);
        double squares = 0;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const double alpha = std::clamp(expected[i | 3], 0.0, 255.0);
            const double difference = std::clamp(expected[i], 0.0, alpha) - image->row(0)[i];
            squares += difference * difference;
        }
        const double decibels =
            10 * std::log10(255 * 255 * static_cast<double>(expected.size()) / squares);
        EXPECT_GT(decibels, row.decibels)
            << row.width << "x" << row.height << " to " << row.newWidth << "x" << row.newHeight;
    }
}

// What is white stays white, however transparent its edge; no layout is read wrongly.
TEST(ScaledImage, ReadsEveryLayout) {
    constexpr std::int64_t side = 40;
    const auto bytes = randomRGBA(side * side, 3);
    using enum CGImageAlphaInfo;
    using Order = CGImageByteOrder;
    struct {
        CGImageAlphaInfo alpha;
        Order order;
        std::vector<std::size_t> places; // of red, green, blue, alpha
    } rows[] {
        {premultipliedLast, Order::big, {0, 1, 2, 3}},
        {premultipliedFirst, Order::little, {2, 1, 0, 3}},
        {premultipliedFirst, Order::big, {1, 2, 3, 0}},
        {premultipliedLast, Order::little, {3, 2, 1, 0}},
        {last, Order::big, {0, 1, 2, 3}},
        {first, Order::little, {2, 1, 0, 3}},
        {noneSkipFirst, Order::little, {2, 1, 0, 3}},
        {noneSkipLast, Order::big, {0, 1, 2, 3}},
        {none, Order::big, {0, 1, 2}},
    };
    for (const std::int64_t to : {5, 30, 90}) {
        for (const auto& row : rows) {
            CGImageLayout layout {.width = side,
                .height = side,
                .bitsPerPixel = static_cast<int>(8 * row.places.size()),
                .alphaInfo = row.alpha,
                .byteOrder = row.order};
            layout.bytesPerRow = side * layout.bitsPerPixel / 8 + 3;
            std::vector<std::uint8_t> stored(static_cast<std::size_t>(layout.byteCount()), 0xAB);
            std::vector<std::uint8_t> plain = bytes;
            for (std::size_t i = 0; i < plain.size(); i += 4) {
                // Straight: white of any opacity. Opaque: whatever is in the last byte.
                if (layout.hasAlpha() && !layout.isPremultiplied())
                    std::fill_n(plain.begin() + static_cast<std::ptrdiff_t>(i), 3, plain[i + 3]);
                else if (!layout.hasAlpha())
                    plain[i + 3] = 255;
                const std::size_t begin =
                    i / 4 / side * static_cast<std::size_t>(layout.bytesPerRow)
                    + i / 4 % side * row.places.size();
                for (std::size_t k = 0; k < row.places.size(); ++k) {
                    const bool isColor = k < 3;
                    const bool isStraight = layout.hasAlpha() && !layout.isPremultiplied();
                    stored[begin + row.places[k]] = isStraight && isColor ? 255
                        : !layout.hasAlpha() && !isColor                  ? bytes[i + 3]
                                                                          : plain[i + k];
                }
            }
            const auto scaled = [to](const CGImageRef& image) {
                return kwCreateScaledCGImageFromCGImage(image, to, to, false, true, false, 1.0, 3);
            };
            const auto one = scaled(imageOf(layout, stored));
            const auto other = scaled(imageOf(CGImageLayout::premultipliedRGBA(side, side), plain));
            EXPECT_TRUE(std::equal(one->row(0), one->row(to), other->row(0)))
                << static_cast<int>(row.alpha) << " to " << to;
        }
    }
}

// Each machine's loops give what plain ones do, whatever the bytes.
TEST(ResamplingLoops, GiveTheSameOnEveryMachine) {
    constexpr std::int64_t pixels = 203;
    constexpr std::size_t room = 4 * (pixels + rowSlack);
    std::mt19937 random(5);
    std::vector<std::vector<std::uint8_t>> source(rowsAtOnce, std::vector<std::uint8_t>(room));
    const std::uint8_t* rows[rowsAtOnce];
    for (std::size_t y = 0; y < rowsAtOnce; ++y) {
        for (auto& byte : source[y])
            byte = random() % 3 == 0 ? 255 : static_cast<std::uint8_t>(random());
        rows[y] = source[y].data();
    }
    using Width = ResamplingWeights::Width;
    const ResamplingWeights narrow(300, 11, 0, 11, NSImageInterpolationHigh, Width::narrow);
    const std::int16_t downWeights[] {20000, -3616, 900, -900};

    std::vector<std::vector<int>> results;
    for (const ResamplingLoops* loops : availableLoops()) {
        std::vector<int>& result = results.emplace_back();
        const auto keep = [&](const auto& values, std::int64_t count) {
            result.insert(result.end(), values.begin(), values.begin() + 4 * count);
        };
        std::vector<std::int16_t> sums(room), wide(room), across(room);
        std::vector<std::int32_t> kept(room);
        RowSum sum {.isFirst = true, .isLast = false, .sums = kept.data(), .result = sums.data()};
        std::copy_n(narrow.values().begin() + static_cast<std::ptrdiff_t>(narrow.taps()[5].offset)
                + narrow.taps()[5].count / 3,
            rowsAtOnce, sum.wordWeights);
        std::ranges::copy(sum.wordWeights, sum.weights);
        loops->addBytes(rows, pixels, &sum, 1, narrow.sum());
        sum.isFirst = false;
        sum.isLast = true;
        loops->addBytes(rows, pixels, &sum, 1, narrow.sum());
        keep(sums, pixels);
        loops->widen(rows[1], pixels, wide.data());
        for (const std::int64_t to : {57, 21, 203, 4}) {
            const ResamplingWeights weights(
                pixels, to, 0, to, NSImageInterpolationHigh, Width::wide);
            loops->addAcross(wide.data(), weights, loops->arranged(weights).data(), across.data());
            keep(across, to);
        }
        std::vector<std::uint8_t> bytes(room);
        loops->finish(
            sums.data(), pixels, {.swapsRedAndBlue = true, .isOpaque = false}, bytes.data());
        keep(bytes, pixels);
        std::vector<std::int16_t> pair(2 * room);
        loops->interleave(sums.data(), wide.data(), pixels, pair.data());
        const std::int16_t* const pairs[] {pair.data(), pair.data()};
        for (const bool isOpaque : {false, true}) {
            loops->addDown(pairs, downWeights, 2, 14, pixels,
                {.swapsRedAndBlue = !isOpaque, .isOpaque = isOpaque}, bytes.data());
            keep(bytes, pixels);
        }
        loops->premultiply(rows[2], pixels, bytes.data());
        keep(bytes, pixels);
        EXPECT_EQ(result, results.front());
    }
}

} // namespace
} // namespace kw
