// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <vector>

namespace kw {

/// An outline of lines and cubic curves.
class KW_EXPORT NSBezierPath {
public:
    enum class Element { moveTo, lineTo, curveTo, closePath };

    struct Segment {
        Element element;
        NSPoint control1; ///< curves only
        NSPoint control2; ///< curves only
        NSPoint point; ///< where the segment ends; where a closed figure began
        friend bool operator==(const Segment&, const Segment&) = default;
    };

    /// Counter-clockwise from the origin where y is up.
    static NSBezierPath bezierPathWithRect(const NSRect& rect);
    /// The same with corners that are quarters of an ellipse, no larger than half the rectangle.
    static NSBezierPath bezierPathWithRoundedRect(
        const NSRect& rect, double xRadius, double yRadius);

    void moveToPoint(NSPoint point);
    /// The operations that go on from the current point throw an `NSException` named
    /// "NSGenericException" where there is none.
    void lineToPoint(NSPoint point);
    void curveToPoint(NSPoint point, NSPoint control1, NSPoint control2);
    void closePath();

    /// The tangent arc of PostScript's `arct`: a line from the current point toward `corner`, then
    /// an arc of `radius` tangent to that line and to the line from `corner` to `toPoint`. The
    /// current point becomes the second tangent point, which may lie beyond `toPoint`. Where the
    /// radius is 0 or the three points lie on one line, a line to `corner` is all there is. A
    /// negative radius puts the circle on the far side of the corner, as the formula says.
    void appendBezierPathWithArcFromPoint(NSPoint corner, NSPoint toPoint, double radius);

    const std::vector<Segment>& segments() const { return m_segments; }
    bool isEmpty() const { return m_segments.empty(); }
    NSPoint currentPoint() const;

    double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width) { m_lineWidth = width; }

    friend bool operator==(const NSBezierPath&, const NSBezierPath&) = default;

private:
    std::vector<Segment> m_segments;
    NSPoint m_start;
    double m_lineWidth = 1;
};

} // namespace kw
