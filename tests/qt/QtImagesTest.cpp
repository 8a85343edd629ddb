// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtImages.h>

#include <gtest/gtest.h>

#include <QColor>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using namespace kw;
using enum CGImageAlphaInfo;

constexpr QRgb black = 0xFF000000;
constexpr QRgb white = 0xFFFFFFFF;

/// Many values of each component; a premultiplied color stays within its alpha.
QImage picture(QImage::Format format, const QList<QRgb>& table) {
    if (!table.isEmpty()) {
        QImage indexed(11, 5, format);
        indexed.setColorTable(table);
        for (int y = 0; y < indexed.height(); ++y) {
            for (int x = 0; x < indexed.width(); ++x)
                indexed.setPixel(x, y, static_cast<uint>((3 * x + y) % table.size()));
        }
        return indexed;
    }
    QImage deep(11, 5, QImage::Format_RGBA64);
    for (int i = 0; i < deep.sizeInBytes(); ++i)
        deep.bits()[i] = static_cast<uchar>(i * 89 + 3);
    // Some conversions leave an alpha in pixels that should have none.
    if (!QImage(1, 1, format).hasAlphaChannel())
        deep.convertTo(QImage::Format_RGBX64);
    return deep.convertToFormat(format);
}

TEST(QtImages, KeepDepthAndPixels) {
    const struct {
        QImage::Format format;
        QList<QRgb> table;
        int bitsPerPixel;
        CGImageAlphaInfo alphaInfo;
        bool isShared;
    } cases[] {
        {QImage::Format_Mono, {black, white}, 1, none, true},
        {QImage::Format_Mono, {white, black}, 1, none, false},
        {QImage::Format_MonoLSB, {white, black}, 1, none, false},
        {QImage::Format_Mono, {0xFF102030, 0x80FFFFFF}, 32, first, false},
        {QImage::Format_Indexed8, {black, 0xFF555555, 0xFFAAAAAA, white}, 8, none, false},
        {QImage::Format_Indexed8, {black, 0xFF123456, 0xFF00FFFF}, 32, noneSkipFirst, false},
        {QImage::Format_Indexed8, {0x00000000, 0xFF123456, 0x4000FFFF}, 32, first, false},
        {QImage::Format_Grayscale8, {}, 8, none, true},
        {QImage::Format_Grayscale16, {}, 16, none, true},
        {QImage::Format_RGB888, {}, 24, none, true},
        {QImage::Format_RGB32, {}, 32, noneSkipFirst, true},
        {QImage::Format_ARGB32, {}, 32, first, true},
        {QImage::Format_ARGB32_Premultiplied, {}, 32, premultipliedFirst, true},
        {QImage::Format_RGBX8888, {}, 32, noneSkipLast, true},
        {QImage::Format_RGBA8888, {}, 32, last, true},
        {QImage::Format_RGBA8888_Premultiplied, {}, 32, premultipliedLast, true},
        {QImage::Format_RGBX64, {}, 64, noneSkipLast, true},
        {QImage::Format_RGBA64, {}, 64, last, true},
        {QImage::Format_RGBA64_Premultiplied, {}, 64, premultipliedLast, true},
        {QImage::Format_BGR888, {}, 32, noneSkipFirst, false},
        {QImage::Format_RGB16, {}, 32, noneSkipFirst, false},
        {QImage::Format_ARGB4444_Premultiplied, {}, 32, premultipliedFirst, false},
        {QImage::Format_Alpha8, {}, 32, premultipliedFirst, false},
        {QImage::Format_RGB30, {}, 64, noneSkipLast, false},
        {QImage::Format_A2BGR30_Premultiplied, {}, 64, premultipliedLast, false},
        {QImage::Format_RGBA16FPx4, {}, 64, last, false},
    };
    for (const auto& [format, table, bitsPerPixel, alphaInfo, isShared] : cases) {
        SCOPED_TRACE(format);
        const QImage qImage = picture(format, table);
        const CGImageRef image = qt::imageFromQImage(qImage);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->bitsPerPixel(), bitsPerPixel);
        EXPECT_EQ(image->alphaInfo(), alphaInfo);
        EXPECT_EQ(image->row(0) == qImage.constBits(), isShared);
        const QImage back = qt::toQImage(image);
        EXPECT_EQ(back.constBits(), image->row(0));
        EXPECT_EQ(back.convertToFormat(QImage::Format_RGBA64),
            qImage.convertToFormat(QImage::Format_RGBA64));
    }
    EXPECT_EQ(qt::imageFromQImage({}), nullptr);
    EXPECT_TRUE(qt::toQImage(nullptr).isNull());
}

TEST(QtImages, ShowEveryLayout) {
    constexpr auto gray = CGColorSpace::calibratedGray;
    constexpr auto rgb = CGColorSpace::calibratedRGB;
    constexpr auto cmyk = CGColorSpace::deviceCMYK;
    constexpr auto big = CGImageByteOrder::big;
    constexpr auto little = CGImageByteOrder::little;
    const struct {
        int bitsPerComponent, bitsPerPixel;
        CGColorSpace space;
        CGImageAlphaInfo alphaInfo;
        CGImageByteOrder order;
        std::vector<std::uint8_t> pixel;
        QRgba64 shown;
    } cases[] {
        {1, 1, gray, none, big, {0x80}, qRgba64(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF)},
        {2, 2, gray, none, big, {0x7F}, qRgba64(0x5555, 0x5555, 0x5555, 0xFFFF)},
        {4, 4, gray, none, big, {0x7F}, qRgba64(0x7777, 0x7777, 0x7777, 0xFFFF)},
        {8, 16, gray, first, big, {0x80, 0x20}, qRgba64(0x2020, 0x2020, 0x2020, 0x8080)},
        {8, 16, gray, noneSkipLast, big, {0x20, 0x80}, qRgba64(0x2020, 0x2020, 0x2020, 0xFFFF)},
        {16, 16, gray, none, big, {0x12, 0x34}, qRgba64(0x1234, 0x1234, 0x1234, 0xFFFF)},
        {16, 16, gray, none, little, {0x34, 0x12}, qRgba64(0x1234, 0x1234, 0x1234, 0xFFFF)},
        {16, 48, rgb, none, big, {1, 2, 3, 4, 5, 6}, qRgba64(0x0102, 0x0304, 0x0506, 0xFFFF)},
        {16, 64, rgb, first, little, {8, 7, 2, 1, 4, 3, 6, 5},
            qRgba64(0x0102, 0x0304, 0x0506, 0x0708)},
        {8, 32, rgb, noneSkipLast, little, {0, 0x33, 0x22, 0x11},
            qRgba64(0x1111, 0x2222, 0x3333, 0xFFFF)},
        {8, 32, rgb, noneSkipLast, big, {0x11, 0x22, 0x33, 0},
            qRgba64(0x1111, 0x2222, 0x3333, 0xFFFF)},
        {8, 32, rgb, premultipliedFirst, big, {0xFF, 0x11, 0x22, 0x33},
            qRgba64(0x1111, 0x2222, 0x3333, 0xFFFF)},
        {8, 32, cmyk, none, big, {0x00, 0x80, 0xF0, 0x20}, qRgba64(0xDFDF, 0x5F5F, 0, 0xFFFF)},
        {8, 32, cmyk, none, little, {0x20, 0xF0, 0x80, 0x00}, qRgba64(0xDFDF, 0x5F5F, 0, 0xFFFF)},
    };
    for (const auto& [bitsPerComponent, bitsPerPixel, space, alphaInfo, order, pixel, shown] :
        cases) {
        // The second row begins where a row of the least size would not.
        const auto padded = static_cast<std::int64_t>(pixel.size()) + 3;
        const std::shared_ptr<std::uint8_t[]> pixels(new std::uint8_t[2 * padded] {});
        std::ranges::copy(pixel, pixels.get() + padded);
        const QImage image = qt::toQImage(CGImage::create(
            {1, 2, bitsPerComponent, bitsPerPixel, padded, space, alphaInfo, order}, pixels));
        ASSERT_EQ(image.size(), QSize(1, 2));
        const QRgba64 color = image.pixelColor(0, 1).rgba64();
        EXPECT_EQ(quint64(color), quint64(shown))
            << bitsPerPixel << " " << int(alphaInfo) << std::hex << " " << quint64(color);
    }
}

} // namespace
