// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSBezierPath.h>

#include <KWToolkit/platform/foundation/NSException.h>

#include <cmath>

namespace kw {

namespace {

NSPoint operator+(NSPoint a, NSPoint b) { return {a.x + b.x, a.y + b.y}; }
NSPoint operator-(NSPoint a, NSPoint b) { return {a.x - b.x, a.y - b.y}; }
NSPoint operator*(NSPoint a, double factor) { return {a.x * factor, a.y * factor}; }
double dot(NSPoint a, NSPoint b) { return a.x * b.x + a.y * b.y; }
double cross(NSPoint a, NSPoint b) { return a.x * b.y - a.y * b.x; }
double length(NSPoint a) { return std::hypot(a.x, a.y); }

} // namespace

void NSBezierPath::moveToPoint(NSPoint point) {
    m_segments.push_back({Element::moveTo, {}, {}, point});
    m_start = point;
}

void NSBezierPath::lineToPoint(NSPoint point) {
    currentPoint();
    m_segments.push_back({Element::lineTo, {}, {}, point});
}

void NSBezierPath::curveToPoint(NSPoint point, NSPoint control1, NSPoint control2) {
    currentPoint();
    m_segments.push_back({Element::curveTo, control1, control2, point});
}

void NSBezierPath::closePath() {
    currentPoint();
    m_segments.push_back({Element::closePath, {}, {}, m_start});
}

NSBezierPath NSBezierPath::bezierPathWithRect(const NSRect& rect) {
    NSBezierPath path;
    path.moveToPoint(rect.origin);
    path.lineToPoint({NSMaxX(rect), NSMinY(rect)});
    path.lineToPoint({NSMaxX(rect), NSMaxY(rect)});
    path.lineToPoint({NSMinX(rect), NSMaxY(rect)});
    path.closePath();
    return path;
}

NSBezierPath NSBezierPath::bezierPathWithRoundedRect(
    const NSRect& rect, double xRadius, double yRadius) {
    const double x = std::clamp(xRadius, 0.0, std::max(rect.size.width / 2, 0.0));
    const double y = std::clamp(yRadius, 0.0, std::max(rect.size.height / 2, 0.0));
    if (!(x > 0 && y > 0))
        return bezierPathWithRect(rect);
    // The handles of a cubic curve for a quarter of a circle (Goldapp 1991).
    constexpr double handle = 4.0 / 3 * (M_SQRT2 - 1);
    const NSPoint corners[] {{NSMaxX(rect), NSMinY(rect)}, {NSMaxX(rect), NSMaxY(rect)},
        {NSMinX(rect), NSMaxY(rect)}, rect.origin};
    NSPoint along {1, 0}; // the side that leads to the corner
    NSBezierPath path;
    path.moveToPoint({NSMinX(rect) + x, NSMinY(rect)});
    for (const NSPoint& corner : corners) {
        const NSPoint next {-along.y, along.x};
        const NSPoint into {along.x * x, along.y * y};
        const NSPoint out {next.x * x, next.y * y};
        path.lineToPoint(corner - into);
        path.curveToPoint(corner + out, corner - into * (1 - handle), corner + out * (1 - handle));
        along = next;
    }
    path.closePath();
    return path;
}

NSPoint NSBezierPath::currentPoint() const {
    if (m_segments.empty())
        throw NSException("NSGenericException", "No current point for path operation");
    return m_segments.back().point;
}

void NSBezierPath::appendBezierPathWithArcFromPoint(
    NSPoint corner, NSPoint toPoint, double radius) {
    const NSPoint in = currentPoint() - corner;
    const NSPoint out = toPoint - corner;
    const double turn = cross(in, out);
    if (radius == 0 || turn == 0) {
        lineToPoint(corner);
        return;
    }

    const NSPoint inward = in * (1 / length(in));
    const NSPoint outward = out * (1 / length(out));
    // The corner's half angle a: the tangent points lie radius / tan(a) from the corner.
    const double cosine = dot(inward, outward);
    const double sine = std::abs(cross(inward, outward));
    const double distance = radius * (1 + cosine) / sine;
    const NSPoint first = corner + inward * distance;
    const NSPoint second = corner + outward * distance;
    lineToPoint(first);

    // The arc sweeps pi - 2a, less than half a circle: two cubic curves of half the sweep each keep
    // it within 0.03 per cent of the radius (Goldapp 1991; one would do up to a quarter circle).
    const double sweep = M_PI - std::atan2(sine, cosine);
    const NSPoint bisector = inward + outward;
    const double centerDistance = std::hypot(radius, distance);
    const NSPoint middleDirection = bisector * (1 / length(bisector));
    const NSPoint middle =
        corner + middleDirection * (std::copysign(centerDistance, radius) - radius);
    const NSPoint middleTangent {middleDirection.y, -middleDirection.x};
    const NSPoint along = dot(middleTangent, outward) >= 0 ? middleTangent : middleTangent * -1;
    if (sweep <= M_PI / 2) {
        const double handle = radius * 4 / 3 * std::tan(sweep / 4);
        curveToPoint(second, first - inward * handle, second - outward * handle);
        return;
    }
    const double handle = radius * 4 / 3 * std::tan(sweep / 8);
    curveToPoint(middle, first - inward * handle, middle - along * handle);
    curveToPoint(second, middle + along * handle, second - outward * handle);
}

} // namespace kw
