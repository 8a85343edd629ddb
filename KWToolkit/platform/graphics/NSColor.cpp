// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSColor.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/graphics/NSImage.h>

#include <algorithm>
#include <string>
#include <utility>

namespace kw {

namespace {

// What is no number is not above 0.
double within01(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

} // namespace

NSColor::NSColor(CGColorSpace space, const Components& components, double alpha)
    : m_space(space)
    , m_components(components)
    , m_alpha(within01(alpha)) {
    std::ranges::transform(m_components, m_components.begin(), within01);
}

std::optional<NSColor> NSColor::colorWithCGColor(const kw::CGColor& color) {
    Components parts {};
    const auto& components = color.components();
    std::copy_n(components.begin(), std::min(components.size(), parts.size()), parts.begin());
    switch (CGColorSpaceGetModel(color.colorSpace())) {
    case CGColorSpaceModel::monochrome:
        return colorWithDeviceWhite(parts[0], color.alpha());
    case CGColorSpaceModel::RGB:
        return colorWithDeviceRed(parts[0], parts[1], parts[2], color.alpha());
    case CGColorSpaceModel::CMYK:
        return colorWithDeviceCyan(parts[0], parts[1], parts[2], parts[3], color.alpha());
    case CGColorSpaceModel::pattern:
        break;
    }
    return std::nullopt;
}

NSColor NSColor::colorWithPatternImage(std::shared_ptr<NSImage> image) {
    NSColor color(CGColorSpace::pattern, {}, 1);
    color.m_pattern = std::move(image);
    return color;
}

void NSColor::throwInvalid(const char* name) const {
    throw NSException(NSInvalidArgumentException,
        std::string("*** -") + name
            + " not valid for this NSColor; need to first convert colorspace.");
}

double NSColor::component(const char* name, CGColorSpaceModel model, std::size_t index) const {
    if (CGColorSpaceGetModel(m_space) != model)
        throwInvalid(name);
    return m_components[index];
}

double NSColor::whiteComponent() const {
    return component("whiteComponent", CGColorSpaceModel::monochrome, 0);
}
double NSColor::redComponent() const {
    return component("redComponent", CGColorSpaceModel::RGB, 0);
}
double NSColor::greenComponent() const {
    return component("greenComponent", CGColorSpaceModel::RGB, 1);
}
double NSColor::blueComponent() const {
    return component("blueComponent", CGColorSpaceModel::RGB, 2);
}

NSColor NSColor::colorWithAlphaComponent(double alpha) const {
    NSColor result = *this;
    result.m_alpha = within01(alpha);
    return result;
}

NSColor NSColor::controlTextColor() {
    return Platform::systemColors().color(SystemColor::controlText);
}

NSColor NSColor::textBackgroundColor() {
    return Platform::systemColors().color(SystemColor::textBackground);
}

std::shared_ptr<NSImage> NSColor::patternImage() const {
    if (m_space != CGColorSpace::pattern)
        throwInvalid("patternImage");
    return m_pattern;
}

int NSColor::numberOfComponents() const {
    if (m_space == CGColorSpace::pattern)
        throwInvalid("numberOfComponents");
    return CGColorSpaceGetNumberOfComponents(m_space) + 1;
}

void NSColor::getComponents(std::span<double> components) const {
    const auto colors = static_cast<std::size_t>(numberOfComponents() - 1);
    std::copy_n(m_components.begin(), std::min(colors, components.size()), components.begin());
    if (components.size() > colors)
        components[colors] = m_alpha;
}

std::optional<NSColor> NSColor::colorUsingColorSpace(CGColorSpace space) const {
    const CGColorSpaceModel from = CGColorSpaceGetModel(m_space);
    const CGColorSpaceModel to = CGColorSpaceGetModel(space);
    if (from == to && to != CGColorSpaceModel::pattern)
        return NSColor(space, m_components, m_alpha);

    if (from == CGColorSpaceModel::CMYK && to == CGColorSpaceModel::monochrome)
        return NSColor(space,
            {1
                - std::min(1.0,
                    0.3 * m_components[0] + 0.59 * m_components[1] + 0.11 * m_components[2]
                        + m_components[3])},
            m_alpha);
    double red = 0, green = 0, blue = 0;
    switch (from) {
    case CGColorSpaceModel::monochrome:
        red = green = blue = m_components[0];
        break;
    case CGColorSpaceModel::RGB:
        red = m_components[0], green = m_components[1], blue = m_components[2];
        break;
    case CGColorSpaceModel::CMYK:
        red = 1 - std::min(1.0, m_components[0] + m_components[3]);
        green = 1 - std::min(1.0, m_components[1] + m_components[3]);
        blue = 1 - std::min(1.0, m_components[2] + m_components[3]);
        break;
    case CGColorSpaceModel::pattern:
        return std::nullopt;
    }
    switch (to) {
    case CGColorSpaceModel::monochrome:
        return NSColor(space, {0.3 * red + 0.59 * green + 0.11 * blue}, m_alpha);
    case CGColorSpaceModel::RGB:
        return NSColor(space, {red, green, blue}, m_alpha);
    case CGColorSpaceModel::CMYK: {
        const double black = 1 - std::max({red, green, blue});
        return NSColor(
            space, {1 - red - black, 1 - green - black, 1 - blue - black, black}, m_alpha);
    }
    case CGColorSpaceModel::pattern:
        break;
    }
    return std::nullopt;
}

std::optional<kw::CGColor> NSColor::CGColor() const {
    if (m_space != CGColorSpace::pattern) {
        std::vector<double> components(static_cast<std::size_t>(numberOfComponents()));
        getComponents(components);
        return kw::CGColor(m_space, std::move(components));
    }
    const CGImageRef tile =
        m_pattern ? m_pattern->CGImageForProposedRect({{}, m_pattern->size()}) : nullptr;
    if (!tile)
        return std::nullopt;
    const NSRect bounds =
        NSMakeRect(0, 0, static_cast<double>(tile->width()), static_cast<double>(tile->height()));
    static constexpr CGPatternCallbacks owning {
        .drawPattern =
            [](void* info, NSGraphicsContext& context) {
                const CGImage& image = **static_cast<CGImageRef*>(info);
                context.drawImage(image,
                    NSMakeRect(0, 0, static_cast<double>(image.width()),
                        static_cast<double>(image.height())));
            },
        .releaseInfo = [](void* info) { delete static_cast<CGImageRef*>(info); },
    };
    return kw::CGColor(
        std::make_shared<const CGPattern>(new CGImageRef(tile), bounds, CGAffineTransform {},
            bounds.size.width, bounds.size.height, CGPatternTiling::constantSpacing, true, owning),
        1.0);
}

} // namespace kw
