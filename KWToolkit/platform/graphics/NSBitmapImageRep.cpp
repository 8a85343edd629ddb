// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>

#include <KWToolkit/platform/graphics/Pixels.h>

#include <algorithm>
#include <array>
#include <new>
#include <span>
#include <utility>

namespace kw {

namespace {

NSSize onePointAPixel(const CGImageLayout& layout) {
    return {static_cast<double>(layout.width), static_cast<double>(layout.height)};
}

bool contains(const CGImageLayout& layout, std::int64_t x, std::int64_t y) {
    return x >= 0 && x < layout.width && y >= 0 && y < layout.height;
}

/// Of what is not negative.
std::uint32_t rounded(double number) {
    constexpr double half = 0.5;
    return static_cast<std::uint32_t>(number + half);
}

NSColor colorOf(CGColorSpace space, const std::array<double, 5>& parts, double alpha) {
    switch (CGColorSpaceGetModel(space)) {
    case CGColorSpaceModel::monochrome:
        return space == CGColorSpace::deviceGray
            ? NSColor::colorWithDeviceWhite(parts[0], alpha)
            : NSColor::colorWithCalibratedWhite(parts[0], alpha);
    case CGColorSpaceModel::CMYK:
        return NSColor::colorWithDeviceCyan(parts[0], parts[1], parts[2], parts[3], alpha);
    default:
        return space == CGColorSpace::deviceRGB
            ? NSColor::colorWithDeviceRed(parts[0], parts[1], parts[2], alpha)
            : NSColor::colorWithCalibratedRed(parts[0], parts[1], parts[2], alpha);
    }
}

} // namespace

NSBitmapImageRep::NSBitmapImageRep(
    const CGImageLayout& layout, std::shared_ptr<const std::uint8_t[]> pixels)
    : NSImageRep(onePointAPixel(layout))
    , m_layout(layout)
    , m_places(layout.componentPlaces())
    , m_pixels(std::move(pixels)) { }

std::shared_ptr<NSBitmapImageRep> NSBitmapImageRep::initWithCGImage(const CGImageRef& image) {
    if (!image)
        return nullptr;
    std::shared_ptr<NSBitmapImageRep> rep(new NSBitmapImageRep(image->layout(), image->pixels()));
    rep->m_image = image;
    return rep;
}

std::shared_ptr<NSBitmapImageRep> NSBitmapImageRep::initWithLayout(const CGImageLayout& layout) {
    if (!layout.isValid())
        return nullptr;
    auto pixels = makePixels(layout.byteCount());
    if (!pixels)
        return nullptr;
    std::uint8_t* const own = pixels.get();
    std::shared_ptr<NSBitmapImageRep> rep(new NSBitmapImageRep(layout, std::move(pixels)));
    rep->m_ownPixels = own;
    return rep;
}

Class& NSBitmapImageRep::classObject() {
    static auto& object = *new Class("NSBitmapImageRep", NSImageRep::classObject());
    return object;
}

std::uint8_t* NSBitmapImageRep::bitmapData() {
    m_image.reset();
    if (!m_ownPixels || (m_wasHandedOut && m_pixels.use_count() > 1)) {
        auto copy = makePixels(m_layout.byteCount());
        if (!copy)
            throw std::bad_alloc();
        std::copy_n(m_pixels.get(), m_layout.byteCount(), copy.get());
        m_ownPixels = copy.get();
        m_pixels = std::move(copy);
    } else if (m_wasHandedOut) {
        // Another thread may have read them and given them back just now. Giving back an owner,
        // too, comes after that.
        std::shared_ptr<const std::uint8_t[]>(m_pixels).reset();
    }
    m_wasHandedOut = false;
    return m_ownPixels;
}

std::optional<NSColor> NSBitmapImageRep::colorAt(std::int64_t x, std::int64_t y) const {
    if (!contains(m_layout, x, y))
        return std::nullopt;
    const std::uint8_t* const row = m_pixels.get() + y * m_layout.bytesPerRow;
    const auto colors = static_cast<std::size_t>(m_layout.colorComponents());
    const double maximum = maximumComponent(m_layout.bitsPerComponent);
    const auto part = [&](std::size_t index) {
        return componentAt(m_layout, row, x, m_places[index]) / maximum;
    };
    const double alpha = m_layout.hasAlpha() ? part(colors) : 1;
    std::array<double, 5> parts {};
    for (std::size_t i = 0; i < colors; ++i) {
        parts[i] = part(i);
        if (m_layout.isPremultiplied())
            parts[i] = alpha > 0 ? parts[i] / alpha : 0;
    }
    return colorOf(m_layout.colorSpace, parts, alpha);
}

void NSBitmapImageRep::setColor(const NSColor& color, std::int64_t x, std::int64_t y) {
    if (!contains(m_layout, x, y))
        return;
    std::array<double, 5> parts {};
    if (CGColorSpaceGetModel(color.colorSpace()) == CGColorSpaceGetModel(m_layout.colorSpace)) {
        color.getComponents(parts);
    } else if (const auto converted = color.colorUsingColorSpace(m_layout.colorSpace)) {
        converted->getComponents(parts);
    } else {
        return;
    }
    const auto colors = static_cast<std::size_t>(m_layout.colorComponents());
    const double factor = m_layout.isPremultiplied() ? parts[colors] : 1;
    const double maximum = maximumComponent(m_layout.bitsPerComponent);
    std::uint8_t* const row = bitmapData() + y * m_layout.bytesPerRow;
    for (std::size_t i = 0; i < colors + (m_layout.hasAlpha() ? 1 : 0); ++i) {
        const double part = i < colors ? parts[i] * factor : parts[i];
        setComponentAt(m_layout, row, x, m_places[i], rounded(part * maximum));
    }
}

CGImageRef NSBitmapImageRep::CGImage() {
    if (!m_image)
        m_image = kw::CGImage::create(m_layout, m_pixels);
    m_wasHandedOut = true;
    return m_image;
}

} // namespace kw
