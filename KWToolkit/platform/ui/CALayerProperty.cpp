// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CALayerProperty.h>

#include <KWToolkit/platform/graphics/NSColor.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <utility>

namespace kw {

namespace {

// Not from + (to - from) * progress: the difference may be too large for a number.
double between(double from, double to, double progress) {
    return from * (1 - progress) + to * progress;
}

NSPoint between(const NSPoint& from, const NSPoint& to, double progress) {
    return {between(from.x, to.x, progress), between(from.y, to.y, progress)};
}

NSRect between(const NSRect& from, const NSRect& to, double progress) {
    return {between(from.origin, to.origin, progress),
        {between(from.size.width, to.size.width, progress),
            between(from.size.height, to.size.height, progress)}};
}

CGAffineTransform between(
    const CGAffineTransform& from, const CGAffineTransform& to, double progress) {
    return {between(from.a, to.a, progress), between(from.b, to.b, progress),
        between(from.c, to.c, progress), between(from.d, to.d, progress),
        between(from.tx, to.tx, progress), between(from.ty, to.ty, progress)};
}

using RGBA = std::array<double, 4>;

/// Nothing for a pattern.
std::optional<RGBA> rgbaOf(const CGColor& color) {
    const auto rgb = NSColor::colorWithCGColor(color);
    const auto converted = rgb ? rgb->colorUsingColorSpace(CGColorSpace::deviceRGB) : std::nullopt;
    if (!converted)
        return std::nullopt;
    RGBA parts {};
    converted->getComponents(parts);
    return parts;
}

std::optional<CGColor> between(
    const std::optional<CGColor>& from, const std::optional<CGColor>& to, double progress) {
    auto one = from ? rgbaOf(*from) : std::nullopt;
    auto other = to ? rgbaOf(*to) : std::nullopt;
    const bool isPattern = (from && !one) || (to && !other);
    if (isPattern || (!one && !other))
        return to;
    const auto transparent = [](RGBA color) { return RGBA {color[0], color[1], color[2], 0}; };
    if (!one)
        one = transparent(*other);
    if (!other)
        other = transparent(*one);
    std::vector<double> mixed(one->size());
    for (std::size_t i = 0; i < mixed.size(); ++i)
        mixed[i] = std::clamp(between((*one)[i], (*other)[i], progress), 0.0, 1.0);
    return CGColor(CGColorSpace::deviceRGB, std::move(mixed));
}

CAContents between(const CAContents& from, const CAContents& to, double progress) {
    // Of two pictures that are fading, the one that shows more.
    return {
        to.image, from.progress < 0.5 ? from.former : from.image, std::clamp(progress, 0.0, 1.0)};
}

bool areFinite(std::initializer_list<double> numbers) {
    return std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); });
}

template <auto member>
constexpr CALayerProperty property(std::string_view key, CALayerProperty::Traits traits = {}) {
    using Value = std::remove_cvref_t<decltype(std::declval<CALayerValues>().*member)>;
    return {
        key,
        traits,
        [](const CALayerValues& values) -> CAValue { return values.*member; },
        [](CALayerValues& values, const CAValue& value) {
            values.*member = std::get<Value>(value);
        },
        [](const CAValue& from, const CAValue& to, double progress) -> CAValue {
            return between(std::get<Value>(from), std::get<Value>(to), progress);
        },
    };
}

constexpr CALayerProperty properties[] = {
    property<&CALayerValues::bounds>("bounds", {.movesFrame = true}),
    property<&CALayerValues::position>("position", {.movesFrame = true}),
    property<&CALayerValues::anchorPoint>("anchorPoint", {.movesFrame = true}),
    property<&CALayerValues::transform>("transform", {.movesFrame = true}),
    property<&CALayerValues::opacity>("opacity"),
    property<&CALayerValues::hidden>("hidden"),
    property<&CALayerValues::backgroundColor>("backgroundColor"),
    property<&CALayerValues::borderColor>("borderColor"),
    property<&CALayerValues::borderWidth>("borderWidth"),
    property<&CALayerValues::cornerRadius>("cornerRadius"),
    property<&CALayerValues::contents>("contents"),
    property<&CALayerValues::contentsScale>("contentsScale", {.isAnimatedByDefault = false}),
};

} // namespace

CGAffineTransform CALayerValues::toSuperlayer() const {
    // The anchor is what lies at the position and what the transform leaves where it is.
    const double x = bounds.origin.x + anchorPoint.x * bounds.size.width;
    const double y = bounds.origin.y + anchorPoint.y * bounds.size.height;
    CGAffineTransform result = transform;
    result.tx += position.x - result.a * x - result.c * y;
    result.ty += position.y - result.b * x - result.d * y;
    return result;
}

NSRect CALayerValues::frame() const {
    const CGAffineTransform matrix = toSuperlayer();
    const auto lowest = [](double factor, double low, double length) {
        return std::min(factor * low, factor * (low + length));
    };
    const auto& [origin, size] = bounds;
    return NSMakeRect(lowest(matrix.a, origin.x, size.width)
            + lowest(matrix.c, origin.y, size.height) + matrix.tx,
        lowest(matrix.b, origin.x, size.width) + lowest(matrix.d, origin.y, size.height)
            + matrix.ty,
        std::abs(matrix.a) * size.width + std::abs(matrix.c) * size.height,
        std::abs(matrix.b) * size.width + std::abs(matrix.d) * size.height);
}

const CALayerProperty* CALayerProperty::find(std::string_view key) {
    const auto* const found = std::ranges::find(properties, key, &CALayerProperty::key);
    return found == std::end(properties) ? nullptr : found;
}

bool isFinite(const CAValue& value) {
    struct Check {
        bool operator()(double number) const { return std::isfinite(number); }
        bool operator()(const NSPoint& point) const { return areFinite({point.x, point.y}); }
        bool operator()(const NSRect& rect) const {
            return areFinite({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
        }
        bool operator()(const CGAffineTransform& matrix) const {
            return areFinite({matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty});
        }
        bool operator()(const std::monostate&) const { return true; }
        bool operator()(const std::optional<CGColor>&) const { return true; }
        bool operator()(const CAContents&) const { return true; }
    };
    return std::visit(Check {}, value);
}

} // namespace kw
