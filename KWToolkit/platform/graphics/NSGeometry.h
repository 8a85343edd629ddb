// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Points, sizes and rectangles in points, y up unless a view is flipped.
#pragma once

#include <algorithm>
#include <cmath>

namespace kw {

struct NSPoint {
    double x = 0;
    double y = 0;
    friend constexpr bool operator==(const NSPoint&, const NSPoint&) = default;
};

struct NSSize {
    double width = 0;
    double height = 0;
    friend constexpr bool operator==(const NSSize&, const NSSize&) = default;
};

struct NSRect {
    NSPoint origin;
    NSSize size;
    friend constexpr bool operator==(const NSRect&, const NSRect&) = default;
};

constexpr NSRect NSMakeRect(double x, double y, double width, double height) {
    return {{x, y}, {width, height}};
}

/// What lies around a rectangle, a distance for each side.
struct NSEdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    friend constexpr bool operator==(const NSEdgeInsets&, const NSEdgeInsets&) = default;
};

constexpr double NSMinX(const NSRect& rect) { return rect.origin.x; }
constexpr double NSMidX(const NSRect& rect) { return rect.origin.x + rect.size.width * 0.5; }
constexpr double NSMaxX(const NSRect& rect) { return rect.origin.x + rect.size.width; }
constexpr double NSMinY(const NSRect& rect) { return rect.origin.y; }
constexpr double NSMidY(const NSRect& rect) { return rect.origin.y + rect.size.height * 0.5; }
constexpr double NSMaxY(const NSRect& rect) { return rect.origin.y + rect.size.height; }

/// A rectangle with a side of 0 or less, or not a number, is empty.
constexpr bool NSIsEmptyRect(const NSRect& rect) {
    return !(rect.size.width > 0 && rect.size.height > 0);
}

/// Moves each side inward; outward for negative amounts.
constexpr NSRect NSInsetRect(const NSRect& rect, double dx, double dy) {
    return NSMakeRect(rect.origin.x + dx, rect.origin.y + dy, rect.size.width - 2 * dx,
        rect.size.height - 2 * dy);
}

/// The smallest rectangle of whole numbers around `rect`; the zero rectangle for an empty one.
inline NSRect NSIntegralRect(const NSRect& rect) {
    if (NSIsEmptyRect(rect))
        return {};
    const double x = std::floor(NSMinX(rect));
    const double y = std::floor(NSMinY(rect));
    return NSMakeRect(x, y, std::ceil(NSMaxX(rect)) - x, std::ceil(NSMaxY(rect)) - y);
}

/// What two rectangles share; the zero rectangle where they share nothing.
constexpr NSRect NSIntersectionRect(const NSRect& one, const NSRect& other) {
    const double x = std::max(NSMinX(one), NSMinX(other));
    const double y = std::max(NSMinY(one), NSMinY(other));
    const NSRect shared = NSMakeRect(
        x, y, std::min(NSMaxX(one), NSMaxX(other)) - x, std::min(NSMaxY(one), NSMaxY(other)) - y);
    return NSIsEmptyRect(shared) ? NSRect {} : shared;
}

/// Whether the point lies in the rectangle; its larger edges do not belong to it.
constexpr bool NSPointInRect(const NSPoint& point, const NSRect& rect) {
    return point.x >= NSMinX(rect) && point.x < NSMaxX(rect) && point.y >= NSMinY(rect)
        && point.y < NSMaxY(rect);
}

} // namespace kw
