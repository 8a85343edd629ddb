// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSColor+CGColor.h>
#include <KWToolkit/imaging/NSColor+RGB255.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/graphics/NSImage.h>
#include <KWToolkit/platform/headless/RecordingGraphicsContext.h>
#include <tests/unit/imaging/Pictures.h>

#include <gtest/gtest.h>

namespace kw {
namespace {

using test::imageOf;

class Version final : public ApplicationService {
public:
    explicit Version(double version)
        : m_version(version) { }
    bool prepareToTerminate() override { return true; }
    void exit() override { }
    double frameworkVersion() const override { return m_version; }

private:
    double m_version;
};

TEST(Color, OfChannelsTo255KeepsItsAlpha) {
    EXPECT_EQ(colorWith255Red(255, 255, 255, 0.5F), NSColor::colorWithCalibratedRed(1, 1, 1, 0.5));
    EXPECT_EQ(colorWith255Red(120, 60, 0, 255), // divided in single precision
        NSColor::colorWithCalibratedRed(120.0F / 255.0F, 60.0F / 255.0F, 0, 1));
}

TEST(CGColor, HasTheComponentsOfAnOrdinaryColor) {
    struct {
        NSColor color;
        CGColorSpace space;
        std::vector<double> components;
    } rows[] {
        {NSColor::colorWithCalibratedRed(1, 0, 0, 1), CGColorSpace::calibratedRGB, {1, 0, 0, 1}},
        {NSColor::colorWithDeviceWhite(0.5, 0.25), CGColorSpace::deviceGray, {0.5, 0.25}},
        {NSColor::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 7), CGColorSpace::deviceCMYK,
            {0.1, 0.2, 0.3, 0.4, 1}},
    };
    for (const double version : {1138.0, 1187.0}) {
        Version service(version);
        const ServiceScope scope(service);
        for (const auto& row : rows)
            EXPECT_EQ(kwCGColor(row.color), CGColor(row.space, row.components));
    }
}

TEST(CGColor, OfAPatternBorrowsItsTile) {
    const auto tile = NSBitmapImageRep::initWithCGImage(
        imageOf(CGImageLayout::premultipliedRGBA(32, 24), std::vector<std::uint8_t>(32 * 24 * 4)));
    const auto image = std::make_shared<NSImage>(NSSize {16, 12});
    tile->setSize({16, 12});
    image->addRepresentation(tile);
    const CGImageRef pixels = tile->CGImage();
    const NSColor color = NSColor::colorWithPatternImage(image);

    for (const double version : {1186.9, 1187.0, 1187.5}) {
        Version service(version);
        const ServiceScope scope(service);
        const long owners = pixels.use_count();
        const auto converted = kwCGColor(color);
        ASSERT_TRUE(converted);
        EXPECT_EQ(pixels.use_count(), owners + (version < 1187 ? 0 : 1)) << version;
        EXPECT_EQ(converted->components(), std::vector<double> {1});
        const CGPattern& pattern = *converted->pattern();
        EXPECT_EQ(pattern.bounds(), NSMakeRect(0, 0, 32, 24));
        EXPECT_EQ(pattern.matrix(), CGAffineTransform());
        EXPECT_EQ((NSSize {pattern.xStep(), pattern.yStep()}), (NSSize {32, 24}));
        EXPECT_EQ(pattern.tiling(), CGPatternTiling::constantSpacing);
        EXPECT_TRUE(pattern.isColored());
        RecordingGraphicsContext context;
        pattern.draw(context);
        ASSERT_EQ(context.calls().size(), 1U);
        EXPECT_EQ(context.calls()[0],
            RecordingGraphicsContext::Call(
                RecordingGraphicsContext::DrawImage {pixels.get(), NSMakeRect(0, 0, 32, 24)}));
        if (version < 1187) {
            EXPECT_EQ(pattern.callbacks().drawPattern, &drawPatternImage);
            EXPECT_EQ(pattern.callbacks().releaseInfo, &releasePatternImage);
        }
        EXPECT_FALSE(
            kwCGColor(NSColor::colorWithPatternImage(std::make_shared<NSImage>(NSSize {1, 1}))));
    }
}

TEST(NSColor, RefusesWhatItHasNot) {
    const NSColor gray = NSColor::colorWithCalibratedWhite(0.5, 1);
    const NSColor red = NSColor::colorWithDeviceRed(1, 0, 0, 1);
    const NSColor pattern = NSColor::colorWithPatternImage(nullptr);
    EXPECT_THROW(gray.redComponent(), NSException);
    EXPECT_THROW(red.whiteComponent(), NSException);
    EXPECT_THROW(red.patternImage(), NSException);
    EXPECT_THROW(pattern.numberOfComponents(), NSException);
    EXPECT_FALSE(pattern.colorUsingColorSpace(CGColorSpace::deviceRGB));
    EXPECT_FALSE(red.colorUsingColorSpace(CGColorSpace::pattern));
    EXPECT_EQ(
        red.colorUsingColorSpace(CGColorSpace::deviceGray), NSColor::colorWithDeviceWhite(0.3, 1));
    EXPECT_EQ(red.colorUsingColorSpace(CGColorSpace::deviceCMYK),
        NSColor::colorWithDeviceCyan(0, 1, 1, 0, 1));
    EXPECT_EQ(NSColor::colorWithDeviceCyan(1, 0, 0, 0.5, 1)
                  .colorUsingColorSpace(CGColorSpace::deviceGray),
        NSColor::colorWithDeviceWhite(1 - (0.3 + 0.5), 1));
    EXPECT_EQ(NSColor::colorWithDeviceCyan(0.25, 0, 0.5, 0.75, 1)
                  .colorUsingColorSpace(CGColorSpace::deviceRGB),
        NSColor::colorWithDeviceRed(0, 0.25, 0, 1));
}

TEST(NSBitmapImageRep, StoresColorsInItsOwnFormat) {
    using enum CGImageAlphaInfo;
    constexpr auto little = CGImageByteOrder::little;
    const NSColor color = NSColor::colorWithCalibratedRed(0.5, 0.25, 1, 0.5);
    struct {
        CGImageLayout layout;
        std::vector<std::uint8_t> stored;
    } rows[] {
        {{.bitsPerPixel = 32, .bytesPerRow = 4}, {64, 32, 128, 128}},
        {{.bitsPerPixel = 32, .bytesPerRow = 4, .alphaInfo = first, .byteOrder = little},
            {255, 64, 128, 128}},
        {{.bitsPerPixel = 32, .bytesPerRow = 4, .alphaInfo = noneSkipFirst}, {0, 128, 64, 255}},
        {{.bitsPerPixel = 24, .bytesPerRow = 3, .alphaInfo = none}, {128, 64, 255}},
        {{.bitsPerComponent = 16,
             .bitsPerPixel = 64,
             .bytesPerRow = 8,
             .alphaInfo = last,
             .byteOrder = little},
            {0, 0x80, 0, 0x40, 0xFF, 0xFF, 0, 0x80}},
        {{.bitsPerComponent = 4,
             .bitsPerPixel = 4,
             .bytesPerRow = 1,
             .colorSpace = CGColorSpace::deviceGray,
             .alphaInfo = none},
            {0x60}}, // 0.4075 of 15
        {{.bitsPerPixel = 32,
             .bytesPerRow = 4,
             .colorSpace = CGColorSpace::deviceCMYK,
             .alphaInfo = none},
            {128, 191, 0, 0}},
    };
    for (auto& row : rows) {
        row.layout.width = row.layout.height = 1;
        const auto bitmap = NSBitmapImageRep::initWithLayout(row.layout);
        ASSERT_TRUE(bitmap);
        bitmap->setColor(color, 0, 0);
        bitmap->setColor(color, 1, 0);
        bitmap->setColor(NSColor::colorWithPatternImage(nullptr), 0, 0);
        EXPECT_EQ(std::vector<std::uint8_t>(
                      bitmap->bitmapData(), bitmap->bitmapData() + row.layout.byteCount()),
            row.stored);
        const auto again = NSBitmapImageRep::initWithLayout(row.layout);
        again->setColor(*bitmap->colorAt(0, 0), 0, 0);
        EXPECT_TRUE(std::equal(row.stored.begin(), row.stored.end(), again->bitmapData()));
        EXPECT_FALSE(bitmap->colorAt(0, -1));
    }
}

TEST(NSBitmapImageRep, ChangesNoImageThatItHandedOut) {
    const auto bitmap = NSBitmapImageRep::initWithLayout(CGImageLayout::premultipliedRGBA(1, 1));
    const CGImageRef before = bitmap->CGImage();
    EXPECT_EQ(bitmap->CGImage(), before);
    bitmap->setColor(NSColor::whiteColor(), 0, 0);
    EXPECT_EQ(before->row(0)[0], 0);
    EXPECT_EQ(bitmap->CGImage()->row(0)[0], 255);
}

TEST(NSImage, GivesTheBitmapThatFillsARectangle) {
    NSImage image;
    image.addRepresentation(std::make_shared<test::OtherRep>(NSSize {50, 50}));
    for (const std::int64_t side : {64, 16, 32})
        image.addRepresentation(test::opaqueBitmap(side, side));
    const std::pair<double, std::int64_t> rows[] {{10, 16}, {16, 16}, {17, 32}, {64, 64}, {99, 64}};
    for (const auto& [wanted, side] : rows)
        EXPECT_EQ(image.CGImageForProposedRect({{}, {wanted, 5}})->width(), side) << wanted;
}

TEST(CGImageLayout, IsValidWherePixelsFit) {
    const CGImageLayout good = CGImageLayout::premultipliedRGBA(3, 2);
    EXPECT_TRUE(good.isValid());
    const auto with = [&](auto change) {
        CGImageLayout layout = good;
        change(layout);
        return layout.isValid();
    };
    EXPECT_FALSE(with([](auto& l) { l.width = 0; }));
    EXPECT_FALSE(with([](auto& l) { l.height = -1; }));
    EXPECT_FALSE(with([](auto& l) { l.bytesPerRow = 11; }));
    EXPECT_FALSE(with([](auto& l) { l.bitsPerPixel = 24; }));
    EXPECT_FALSE(with([](auto& l) { l.bitsPerComponent = 4; }));
    EXPECT_FALSE(with([](auto& l) { l.colorSpace = CGColorSpace::pattern; }));
    EXPECT_FALSE(with([](auto& l) { l.bytesPerRow = std::int64_t {1} << 62; }));
    EXPECT_FALSE(with([](auto& l) { l.width = std::int64_t {1} << 40; }));
    EXPECT_FALSE(CGImage::create(good, nullptr));
}

} // namespace
} // namespace kw
