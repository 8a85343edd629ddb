// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkitQt/QtImages.h>

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImageWriter>

#include <sys/stat.h>

#include <cstdint>
#include <string>

namespace {

using namespace kw;
using namespace std::string_literals;
using kw::test::TemporaryFolder;

QImage picture(QImage::Format format = QImage::Format_RGB32, QSize size = {37, 23}) {
    QImage deep(size, QImage::Format_RGBX64);
    for (qsizetype i = 0; i < deep.sizeInBytes(); ++i)
        deep.bits()[i] = i % 8 < 6 ? static_cast<uchar>(i * 89 + 3) : 0xFF;
    return deep.convertToFormat(format);
}

std::string encoded(const QImage& image, const char* format, bool isProgressive = false) {
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(isProgressive);
    writer.setQuality(100); // without loss, where there is a choice
    EXPECT_TRUE(writer.write(image));
    return buffer.data().toStdString();
}

const std::string svgStart = R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="48"
    xmlns:xlink="http://www.w3.org/1999/xlink">)";
const std::string square = R"(<rect width="8" height="8" fill="#f00"/>)";

/// A GIF of one color, red; each frame is 1 x 1.
std::string gif(int frames, const std::string& size = "\1\0\1\0"s) {
    std::string result = "GIF89a" + size + "\x80\0\0\xFF\0\0\0\0\xFF"s;
    for (int i = 0; i < frames; ++i)
        result += "\x2C\0\0\0\0\1\0\1\0\0\2\2"s + (i == 0 ? "\x44" : "\x4C") + "\1\0"s;
    return result + ";";
}

DecodedImage decode(const std::string& data) {
    return Platform::imageDecoder().imageFromData(data);
}

TEST(ImageDecoder, ReadsPixelsInTheirOwnDepth) {
    const struct {
        const char* format;
        QImage image;
        int bitsPerPixel;
    } cases[] {
        {"png", picture(), 32},
        {"png", picture(QImage::Format_RGBX64), 64},
        {"png", picture(QImage::Format_Grayscale8), 8},
        {"png", picture(QImage::Format_Grayscale16), 16},
        {"png", picture(QImage::Format_Mono), 1},
        {"png", picture(QImage::Format_Indexed8), 32},
        {"bmp", picture(), 32},
        {"bmp", picture(QImage::Format_Mono), 1},
        {"tiff", picture(QImage::Format_ARGB32), 32},
        {"tiff", picture(QImage::Format_Grayscale16), 16},
        {"webp", picture(), 32},
        {"jpeg", picture(QImage::Format_Grayscale8), 8},
        {"jpeg", picture(), 32},
    };
    const TemporaryFolder folder;
    for (const auto& [format, image, bitsPerPixel] : cases) {
        SCOPED_TRACE(testing::Message() << format << " " << image.format());
        const std::string data = encoded(image, format);
        // Neither the name's end nor its bytes matter.
        const auto fromFile =
            Platform::imageDecoder().imageFromFile(folder.write("\xFF%\n'.txt", data));
        for (const CGImageRef& read : {decode(data).image, fromFile.image}) {
            ASSERT_TRUE(read);
            EXPECT_EQ(read->bitsPerPixel(), bitsPerPixel);
            QImage shown = qt::toQImage(read).convertToFormat(QImage::Format_RGBA64);
            if (format == "jpeg"s)
                EXPECT_EQ(shown.size(), image.size());
            else
                EXPECT_EQ(shown, image.convertToFormat(QImage::Format_RGBA64));
        }
        EXPECT_EQ(decode(data.substr(0, data.size() - data.size() / 10)).image, nullptr)
            << "cut off";
    }
}

TEST(ImageDecoder, ReadsTheFirstFrameAlone) {
    const CGImageRef image = decode(gif(3)).image;
    ASSERT_TRUE(image);
    EXPECT_EQ(qt::toQImage(image).pixel(0, 0), qRgb(255, 0, 0));
}

TEST(ImageDecoder, TellsTheOrientationAndLeavesThePixels) {
    const std::string jpeg = encoded(picture(), "jpeg");
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const std::string exif = "\xFF\xE1\0\x22"
                                 "Exif\0\0II*\0\x08\0\0\0\1\0\x12\1\3\0\1\0\0\0"s
            + static_cast<char>(orientation) + "\0\0\0\0\0\0\0"s;
        const DecodedImage decoded = decode(jpeg.substr(0, 2) + exif + jpeg.substr(2));
        EXPECT_EQ(decoded.orientation, orientation);
        ASSERT_TRUE(decoded.image);
        EXPECT_EQ(qt::toQImage(decoded.image), qt::toQImage(decode(jpeg).image));
    }
}

TEST(ImageDecoder, ReducesToNoLessThanWanted) {
    const TemporaryFolder folder;
    const QImage large = picture(QImage::Format_RGB32, {804, 600});
    const struct {
        std::string data;
        PixelSize wanted, expected;
    } cases[] {
        {encoded(large, "jpeg"), {1, 1}, {100, 75}},
        {encoded(large, "jpeg"), {101, 75}, {201, 150}},
        {encoded(large, "jpeg", true), {200, 151}, {301, 225}},
        {encoded(large, "jpeg"), {10, 599}, {804, 600}},
        {encoded(large, "jpeg"), {9999, 9999}, {804, 600}},
        {encoded(large, "png"), {10, 10}, {804, 600}},
        {svgStart + square + "</svg>", {0, 12}, {16, 12}},
        {svgStart + square + "</svg>", {17, 1}, {17, 13}},
        {svgStart + square + "</svg>", {640, 480}, {64, 48}},
    };
    for (const auto& [data, wanted, expected] : cases) {
        PixelSize stored;
        const auto wantedSize = [&, size = wanted](PixelSize storedSize, ImageOrientation) {
            stored = storedSize;
            return size;
        };
        const CGImageRef image =
            Platform::imageDecoder()
                .reducedImageFromFile(folder.write("picture", data), wantedSize)
                .image;
        ASSERT_TRUE(image);
        EXPECT_EQ((PixelSize {image->width(), image->height()}), expected) << wanted.width;
        EXPECT_EQ(stored.width, data[0] == '<' ? 64 : 804);
    }
}

TEST(ImageDecoder, RefusesWhatIsNoPictureOrTooMuch) {
    std::string scans = encoded(picture(), "jpeg", true);
    scans.resize(scans.size() - 2);
    const std::string lastScan = scans.substr(scans.rfind("\xFF\xDA"));
    for (int i = 0; i < 300; ++i)
        scans += lastScan;
    std::string uses = R"(<g id="a0"><path d="M0 0L9 9"/></g>)";
    for (int i = 1; i < 30; ++i) {
        const auto last = R"(<use xlink:href="#a)" + std::to_string(i - 1) + R"("/>)";
        uses += R"(<g id="a)" + std::to_string(i) + R"(">)" + last + last + "</g>";
    }
    std::string deep, deepEnd;
    std::string attributes;
    std::string style = "<style>";
    std::string selectors, elements;
    for (int i = 0; i < 20000; ++i) {
        deep += "<g>";
        deepEnd += "</g>";
        attributes += " a" + std::to_string(i) + "='1'";
        style += ".a{}<a/>";
        selectors += ",.a";
        elements += "<g/>";
    }
    const std::pair<const char*, std::string> cases[] {
        {"nothing", ""},
        {"text", "abc"},
        {"another format", "P6 1 1 255 abc"},
        {"a canvas", gif(1, "\xFF\xFF\xFF\xFF"s)},
        {"scans", scans + "\xFF\xD9"},
        {"uses", svgStart + uses + "</svg>"},
        {"used by itself", svgStart + R"(<g id="a"><use xlink:href="#a"/></g></svg>)"},
        {"depth", svgStart + deep + deepEnd + "</svg>"},
        {"attributes", svgStart + "<g" + attributes + "/></svg>"},
        {"selectors", svgStart + "<style>.a" + selectors + "{}</style>" + elements + "</svg>"},
        {"rules", svgStart + style + "</style></svg>"},
        {"a long path", svgStart + "<path d='M0 0" + std::string(17'000'000, ' ') + "'/></svg>"},
        {"large and dense",
            R"(<svg width="5000" height="5000"><path d="M0 0)" + std::string(100'000, ' ')
                + R"("/></svg>)"},
        {"a large vector picture", R"(<svg width="60000" height="60000"></svg>)"},
        {"unfinished", svgStart + square},
    };
    for (const auto& [name, data] : cases)
        EXPECT_EQ(decode(data).image, nullptr) << name;
    EXPECT_NE(decode(svgStart + square + "</svg>").image, nullptr);

    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {folder.path(), folder.path("pipe"), folder.path("none"),
             "/dev/zero"s, ""s, folder.write("picture", gif(1)) + '\0'})
        EXPECT_EQ(Platform::imageDecoder().imageFromFile(path).image, nullptr) << path;
}

// Each line of these would be a thousand dashes.
TEST(ImageDecoder, DrawsDashedLinesWhole) {
    std::string points;
    for (int i = 0; i < 20000; ++i)
        points += "0,0 8,8 ";
    for (const std::string style : {R"(stroke-dasharray="0.01" stroke="#f00")",
             R"(style="stroke:#f00;stroke-dasha\rray:0.01")"}) {
        const CGImageRef read =
            decode(R"(<svg width="8" height="8"><polyline fill="none" stroke-width="9" )" + style
                + " points='" + points + "'/></svg>")
                .image;
        ASSERT_TRUE(read);
        EXPECT_EQ(qt::toQImage(read).pixel(4, 4), qRgb(255, 0, 0)) << style;
    }
}

TEST(ImageDecoder, RefusesDeepColorsWithATransparentOne) {
    std::string png = encoded(picture(QImage::Format_RGBX64), "png");
    ASSERT_TRUE(decode(png).image);
    png.insert(png.find("IDAT") - 4, "\0\0\0\6tRNS\0\1\0\2\0\3crc."s);
    EXPECT_FALSE(decode(png).image);
}

TEST(ImageDecoder, ReadsNoOtherFileForAVectorPicture) {
    const TemporaryFolder folder;
    // Whoever opens it, waits.
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto image = [](const std::string& address) {
        return R"(<image width="64" height="48" xlink:href=")" + address + R"("/>)";
    };
    const auto inText = [&](const std::string& data) {
        return image(
            "data:image/png;base64," + QByteArray::fromStdString(data).toBase64().toStdString());
    };
    const std::string cases[] {
        svgStart + image(pipe),
        svgStart + image("data/../" + pipe),
        svgStart + inText("abc"),
        svgStart + inText(svgStart + image(pipe) + "</svg>"),
        R"(<?xml-stylesheet type="text/css" href=")" + pipe + R"("?>)" + svgStart,
        R"(<!DOCTYPE svg [<!ATTLIST image xlink:href CDATA ")" + pipe + R"(">]>)" + svgStart
            + R"(<image width="9" height="9"/>)",
    };
    for (const std::string& text : cases) {
        const CGImageRef read = decode(text + square + "</svg>").image;
        ASSERT_TRUE(read);
        EXPECT_EQ(qt::toQImage(read).pixel(4, 4), qRgb(255, 0, 0)) << "the rest is drawn";
        EXPECT_EQ(qt::toQImage(read).pixel(20, 20), 0u);
    }
    EXPECT_EQ(qt::toQImage(decode(svgStart + inText(gif(1)) + "</svg>").image).pixel(20, 20),
        qRgb(255, 0, 0))
        << "pixels in the text are";
}

} // namespace
