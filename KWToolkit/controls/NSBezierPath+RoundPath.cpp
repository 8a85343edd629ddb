// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSBezierPath+RoundPath.h>

#include <cstdint>
#include <limits>

namespace kw {

namespace {

/// Truncated toward zero; what no 32-bit integer can hold gives the smallest, as the conversion
/// instruction of x86 does.
std::int32_t gridValue(double value) {
    constexpr auto smallest = std::numeric_limits<std::int32_t>::min();
    constexpr auto largest = std::numeric_limits<std::int32_t>::max();
    if (!(value > smallest - 1.0 && value < largest + 1.0))
        return smallest;
    return static_cast<std::int32_t>(value);
}

struct CornerRadii {
    float maxXMinY;
    float maxXMaxY;
    float minXMaxY;
    float minXMinY;
};

NSBezierPath outline(NSRect rect, const CornerRadii& radii, float border) {
    const double inset = static_cast<double>(border) * 0.5;
    const NSRect snapped = NSIntegralRect(NSInsetRect(rect, inset, inset));
    const double x = snapped.origin.x + 0.5;
    const double y = snapped.origin.y + 0.5;
    const double width = snapped.size.width;
    const double height = snapped.size.height;
    const double minX = gridValue(x);
    const double midX = gridValue(x + width * 0.5);
    const double maxX = gridValue(x + width);
    const double minY = gridValue(y);
    const double midY = gridValue(y + height * 0.5);
    const double maxY = gridValue(y + height);

    NSBezierPath path;
    path.moveToPoint({midX, minY});
    path.appendBezierPathWithArcFromPoint({maxX, minY}, {maxX, midY}, radii.maxXMinY);
    path.appendBezierPathWithArcFromPoint({maxX, maxY}, {midX, maxY}, radii.maxXMaxY);
    path.appendBezierPathWithArcFromPoint({minX, maxY}, {minX, midY}, radii.minXMaxY);
    // Deliberate: the last corner is the unsnapped one, half a pixel off the grid of the others.
    path.appendBezierPathWithArcFromPoint({x, y}, {midX, minY}, radii.minXMinY);
    path.closePath();
    return path;
}

} // namespace

NSBezierPath roundBezierPath(NSRect rect, float angleRadius, float border) {
    return outline(rect, {angleRadius, angleRadius, angleRadius, angleRadius}, border);
}

NSBezierPath halfBottomRoundBezierPath(NSRect rect, float angleRadius, float border) {
    return outline(rect, {0, angleRadius, angleRadius, 0}, border);
}

NSBezierPath halfTopRoundBezierPath(NSRect rect, float angleRadius, float border) {
    return outline(rect, {angleRadius, 0, 0, angleRadius}, border);
}

NSRect centerRectInRect(const NSRect& rect, const NSRect& inRect) {
    return {{inRect.origin.x + (inRect.size.width - rect.size.width) * 0.5,
                inRect.origin.y + (inRect.size.height - rect.size.height) * 0.5},
        rect.size};
}

} // namespace kw
