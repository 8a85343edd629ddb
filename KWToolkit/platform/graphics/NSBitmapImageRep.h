// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGImage.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSImageRep.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace kw {

/// Pixels that can be changed. Used on one thread at a time; different ones on any threads.
class KW_EXPORT NSBitmapImageRep : public NSImageRep {
public:
    /// Shows an image's pixels, one a point. They are shared until this one's are changed. Null
    /// where there is no image.
    static std::shared_ptr<NSBitmapImageRep> initWithCGImage(const CGImageRef& image);
    /// All zero, one a point. Null where the layout is not valid or there is no memory for it.
    static std::shared_ptr<NSBitmapImageRep> initWithLayout(const CGImageLayout& layout);

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const CGImageLayout& layout() const { return m_layout; }
    std::int64_t pixelsWide() const { return m_layout.width; }
    std::int64_t pixelsHigh() const { return m_layout.height; }
    int bitsPerSample() const { return m_layout.bitsPerComponent; }
    int bitsPerPixel() const { return m_layout.bitsPerPixel; }
    std::int64_t bytesPerRow() const { return m_layout.bytesPerRow; }
    bool hasAlpha() const { return m_layout.hasAlpha(); }

    /// The pixels, for changing them. What was handed out as an image before keeps its own. Valid
    /// until the next call of a function that is not const. Throws `std::bad_alloc`.
    std::uint8_t* bitmapData();
    const std::uint8_t* bitmapData() const { return m_pixels.get(); }

    /// The color of a pixel, in the bitmap's own space and not premultiplied; rows count from the
    /// top. Empty outside of the bitmap. A premultiplied pixel without opacity is black.
    std::optional<NSColor> colorAt(std::int64_t x, std::int64_t y) const;
    /// Stores a color in the bitmap's own format: converted to its space, multiplied by alpha
    /// where the format wants it, each component rounded to the nearest. A format without alpha
    /// drops it, and leaves a byte that stands in its place as it is. Nothing happens outside of
    /// the bitmap or for a pattern. Throws `std::bad_alloc`, like `bitmapData`.
    void setColor(const NSColor& color, std::int64_t x, std::int64_t y);

    /// The pixels as they are now. The same image each time until they change.
    CGImageRef CGImage();

private:
    NSBitmapImageRep(const CGImageLayout& layout, std::shared_ptr<const std::uint8_t[]> pixels);

    CGImageLayout m_layout;
    std::array<int, 5> m_places;
    std::shared_ptr<const std::uint8_t[]> m_pixels;
    std::uint8_t* m_ownPixels = nullptr; // the same where they are nobody else's to begin with
    CGImageRef m_image; // what was handed out, until the pixels change
    bool m_wasHandedOut = false;
};

} // namespace kw
