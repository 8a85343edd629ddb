// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSColor+CGColor.h>

#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/graphics/NSImage.h>
#include <KWToolkit/platform/ui/NSApplication.h>

#include <cmath>
#include <cstdint>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace kw {

namespace {

/// From here on a color has a conversion of its own.
constexpr double versionWithCGColor = 1187;

std::optional<CGColor> patternColor(const NSImage& image) {
    const CGImageRef tile = image.CGImageForProposedRect({{}, image.size()});
    if (!tile)
        return std::nullopt;
    const auto width = static_cast<double>(static_cast<std::int32_t>(tile->width()));
    const auto height = static_cast<double>(static_cast<std::int32_t>(tile->height()));
    const CGPatternCallbacks callbacks {0, &drawPatternImage, &releasePatternImage};
    // Deliberate: the tile is borrowed. It lives as long as the image that it came from.
    return CGColor(std::make_shared<const CGPattern>(const_cast<CGImage*>(tile.get()),
                       NSMakeRect(0, 0, width, height), CGAffineTransform {}, width, height,
                       CGPatternTiling::constantSpacing, /*isColored*/ true, callbacks),
        1.0);
}

CGColor componentColor(const NSColor& color) {
    std::vector<double> components(static_cast<std::size_t>(color.numberOfComponents()));
    color.getComponents(components);
    return {color.colorSpace(), std::move(components)};
}

} // namespace

std::optional<CGColor> kwCGColor(const NSColor& color) {
    if (std::floor(NSAppKitVersionNumber()) >= versionWithCGColor)
        return color.CGColor();
    try {
        const std::shared_ptr<NSImage> image = color.patternImage();
        return image ? patternColor(*image) : std::nullopt;
    } catch (const std::exception&) {
        return componentColor(color);
    }
}

void drawPatternImage(void* info, NSGraphicsContext& context) {
    const auto& image = *static_cast<const CGImage*>(info);
    context.drawImage(image,
        NSMakeRect(0, 0, static_cast<double>(static_cast<std::uint64_t>(image.width())),
            static_cast<double>(static_cast<std::uint64_t>(image.height()))));
}

void releasePatternImage(void*) { }

} // namespace kw
