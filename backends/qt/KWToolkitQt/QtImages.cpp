// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtImages.h>

#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kw::qt {

namespace {

using enum CGImageAlphaInfo;

constexpr auto bigEndian = CGImageByteOrder::big;
constexpr auto hostEndian =
    std::endian::native == std::endian::little ? CGImageByteOrder::little : bigEndian;

constexpr QRgb black = 0xFF000000;
constexpr QRgb white = 0xFFFFFFFF;

struct FormatPair {
    QImage::Format format;
    CGColorSpace colorSpace;
    int bitsPerComponent;
    int bitsPerPixel;
    CGImageAlphaInfo alphaInfo;
    CGImageByteOrder byteOrder;
};

constexpr FormatPair formatPairs[] {
    {QImage::Format_Mono, CGColorSpace::deviceGray, 1, 1, none, bigEndian},
    {QImage::Format_Grayscale8, CGColorSpace::deviceGray, 8, 8, none, bigEndian},
    {QImage::Format_Grayscale16, CGColorSpace::deviceGray, 16, 16, none, hostEndian},
    {QImage::Format_RGB888, CGColorSpace::deviceRGB, 8, 24, none, bigEndian},
    {QImage::Format_RGB32, CGColorSpace::deviceRGB, 8, 32, noneSkipFirst, hostEndian},
    {QImage::Format_ARGB32, CGColorSpace::deviceRGB, 8, 32, first, hostEndian},
    {QImage::Format_ARGB32_Premultiplied, CGColorSpace::deviceRGB, 8, 32, premultipliedFirst,
        hostEndian},
    {QImage::Format_RGBX8888, CGColorSpace::deviceRGB, 8, 32, noneSkipLast, bigEndian},
    {QImage::Format_RGBA8888, CGColorSpace::deviceRGB, 8, 32, last, bigEndian},
    {QImage::Format_RGBA8888_Premultiplied, CGColorSpace::deviceRGB, 8, 32, premultipliedLast,
        bigEndian},
    {QImage::Format_RGBX64, CGColorSpace::deviceRGB, 16, 64, noneSkipLast, hostEndian},
    {QImage::Format_RGBA64, CGColorSpace::deviceRGB, 16, 64, last, hostEndian},
    {QImage::Format_RGBA64_Premultiplied, CGColorSpace::deviceRGB, 16, 64, premultipliedLast,
        hostEndian},
};

template <typename Predicate>
const FormatPair* findPair(const Predicate& fits) {
    const auto* const found = std::ranges::find_if(formatPairs, fits);
    return found == std::end(formatPairs) ? nullptr : found;
}

const FormatPair* pairOf(QImage::Format format) {
    return findPair([&](const FormatPair& pair) { return pair.format == format; });
}

const FormatPair* pairOf(const CGImageLayout& layout) {
    return findPair([&](const FormatPair& pair) {
        return CGColorSpaceGetModel(pair.colorSpace) == CGColorSpaceGetModel(layout.colorSpace)
            && pair.bitsPerComponent == layout.bitsPerComponent
            && pair.bitsPerPixel == layout.bitsPerPixel && pair.alphaInfo == layout.alphaInfo
            && pair.byteOrder == layout.byteOrder;
    });
}

CGImageLayout layoutOf(const QImage& image, const FormatPair& pair) {
    return {.width = image.width(),
        .height = image.height(),
        .bitsPerComponent = pair.bitsPerComponent,
        .bitsPerPixel = pair.bitsPerPixel,
        .bytesPerRow = image.bytesPerLine(),
        .colorSpace = pair.colorSpace,
        .alphaInfo = pair.alphaInfo,
        .byteOrder = pair.byteOrder};
}

QImage::Format colorFormat(bool isDeep, bool hasAlpha, bool isPremultiplied) {
    constexpr QImage::Format formats[2][3] {
        {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied},
        {QImage::Format_RGBX64, QImage::Format_RGBA64, QImage::Format_RGBA64_Premultiplied}};
    return formats[isDeep ? 1 : 0][!hasAlpha ? 0 : isPremultiplied ? 2 : 1];
}

QImage withLayout(const QImage& image) {
    const QList<QRgb> table = image.colorTable();
    const bool isInverted = table == QList {white, black};
    if (image.depth() == 1 && (isInverted || table == QList {black, white})) {
        QImage mono = image.convertToFormat(QImage::Format_Mono);
        if (isInverted)
            mono.invertPixels();
        return mono;
    }
    const bool isOpaqueGray = !table.isEmpty() && std::ranges::all_of(table, [](QRgb color) {
        return qIsGray(color) && qAlpha(color) == 0xFF;
    });
    if (isOpaqueGray)
        return image.convertToFormat(QImage::Format_Grayscale8);
    if (image.depth() > 1 && pairOf(image.format()))
        return image;
    const QPixelFormat format = image.pixelFormat();
    return image.convertToFormat(colorFormat(format.redSize() > 8, image.hasAlphaChannel(),
        format.premultiplied() == QPixelFormat::Premultiplied));
}

// To a picture.

/// Whether all components at a place have all bits set.
template <typename Component>
bool isFilled(const CGImage& image, int place) {
    constexpr int components = 4;
    constexpr auto maximum = static_cast<Component>(~Component {});
    for (std::int64_t y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const Component*>(image.row(y)) + place;
        Component all = maximum;
        for (std::int64_t x = 0; x < image.width(); ++x)
            all &= row[components * x];
        if (all != maximum)
            return false;
    }
    return true;
}

/// Qt reads whole pixels at once, and the component that nobody else looks at.
bool isReadable(const CGImage& image) {
    const CGImageLayout& layout = image.layout();
    const auto pixelBytes = static_cast<unsigned>(layout.bitsPerPixel / 8);
    if (std::has_single_bit(pixelBytes)
        && (reinterpret_cast<std::uintptr_t>(image.row(0)) % pixelBytes != 0
            || layout.bytesPerRow % pixelBytes != 0))
        return false;
    if (layout.alphaInfo != noneSkipFirst && layout.alphaInfo != noneSkipLast)
        return true;
    const int place = layout.componentPlaces()[3];
    return layout.bitsPerComponent == 8 ? isFilled<std::uint8_t>(image, place)
                                        : isFilled<std::uint16_t>(image, place);
}

QImage sharing(const CGImageRef& image, QImage::Format format) {
    auto* const holder = new CGImageRef(image);
    const QImageCleanupFunction release = [](void* held) { delete static_cast<CGImageRef*>(held); };
    QImage result(image->row(0), static_cast<int>(image->width()),
        static_cast<int>(image->height()), image->bytesPerRow(), format, release, holder);
    if (result.isNull()) {
        release(holder); // Qt does not
        return {};
    }
    if (format == QImage::Format_Mono)
        result.setColorTable({black, white});
    return result;
}

/// Red, green, blue and alpha, or gray in each of the three.
std::array<std::uint32_t, 4> colorAt(const CGImageLayout& layout, const std::array<int, 5>& places,
    const std::uint8_t* row, qint64 x) {
    const std::uint32_t maximum = maximumComponent(layout.bitsPerComponent);
    const auto component = [&](int index) {
        return componentAt(layout, row, x, places[static_cast<std::size_t>(index)]);
    };
    const int colors = layout.colorComponents();
    std::array<std::uint32_t, 4> color {};
    for (int i = 0; i < 3; ++i) {
        const std::uint32_t ink = colors == 4 ? component(i) + component(3) : 0;
        color[static_cast<std::size_t>(i)] =
            colors == 4 ? maximum - std::min(maximum, ink) : component(colors == 1 ? 0 : i);
    }
    color[3] = layout.hasAlpha() ? component(colors) : maximum;
    return color;
}

QImage converted(const CGImage& image) {
    const CGImageLayout& from = image.layout();
    const bool isDeep = from.bitsPerComponent == 16;
    QImage::Format format = colorFormat(isDeep, from.hasAlpha(), from.isPremultiplied());
    if (from.colorComponents() == 1 && !from.hasAlpha())
        format = isDeep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8;
    QImage result(static_cast<int>(from.width), static_cast<int>(from.height), format);
    if (result.isNull())
        return {};

    const CGImageLayout to = layoutOf(result, *pairOf(format));
    const auto fromPlaces =
        from.bitsPerComponent < 8 ? std::array<int, 5> {} : from.componentPlaces();
    const auto toPlaces = to.componentPlaces();
    const int count = to.bitsPerPixel / to.bitsPerComponent;
    const std::uint32_t factor =
        maximumComponent(to.bitsPerComponent) / maximumComponent(from.bitsPerComponent);
    for (int y = 0; y < result.height(); ++y) {
        std::uint8_t* const row = result.scanLine(y);
        for (int x = 0; x < result.width(); ++x) {
            const auto color = colorAt(from, fromPlaces, image.row(y), x);
            for (int i = 0; i < count; ++i) {
                const auto index = static_cast<std::size_t>(i);
                setComponentAt(to, row, x, toPlaces[index], factor * color[index]);
            }
        }
    }
    return result;
}

} // namespace

CGImageRef imageFromQImage(const QImage& image) {
    if (image.isNull())
        return nullptr;
    const auto held = std::make_shared<const QImage>(withLayout(image));
    if (held->isNull())
        return nullptr;
    return CGImage::create(layoutOf(*held, *pairOf(held->format())),
        std::shared_ptr<const std::uint8_t[]>(held, held->constBits()));
}

QImage toQImage(const CGImageRef& image) {
    if (!image)
        return {};
    const FormatPair* const pair = pairOf(image->layout());
    return pair && isReadable(*image) ? sharing(image, pair->format) : converted(*image);
}

} // namespace kw::qt
