// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/graphics/NSBezierPath.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace kw;
using Element = NSBezierPath::Element;

NSPoint pointOnCurve(NSPoint start, const NSBezierPath::Segment& curve, double t) {
    const double s = 1 - t;
    const auto at = [&](double NSPoint::* axis) {
        return s * s * s * start.*axis + 3 * s * s * t * curve.control1.*axis
            + 3 * s * t * t * curve.control2.*axis + t * t * t * curve.point.*axis;
    };
    return {at(&NSPoint::x), at(&NSPoint::y)};
}

TEST(NSBezierPath, TangentArcsLieOnTheirCircle) {
    const double r2 = std::sqrt(2);
    const struct {
        const char* name;
        NSPoint to; // from 0, 0 by the corner 10, 0
        double radius;
        NSPoint center, first, second;
    } arcs[] = {
        {"left turn", {10, 10}, 4, {6, 4}, {6, 0}, {10, 4}},
        {"right turn", {10, -10}, 4, {6, -4}, {6, 0}, {10, -4}},
        {"beyond both points", {10, 5}, 20, {-10, 20}, {-10, 0}, {10, 20}},
        {"acute corner", {0, 10}, 1, {9 - r2, 1}, {9 - r2, 0}, {9 - r2 / 2, 1 + r2 / 2}},
        {"obtuse corner", {20, 10}, 5, {15 - 5 * r2, 5}, {15 - 5 * r2, 0},
            {15 - 5 / r2, 5 - 5 / r2}},
        {"negative radius", {10, 10}, -4, {14, -4}, {14, 0}, {10, -4}},
    };
    for (const auto& arc : arcs) {
        SCOPED_TRACE(arc.name);
        NSBezierPath path;
        path.moveToPoint({0, 0});
        path.appendBezierPathWithArcFromPoint({10, 0}, arc.to, arc.radius);
        ASSERT_GE(path.segments().size(), 3u);
        EXPECT_EQ(path.segments()[1].element, Element::lineTo);
        EXPECT_NEAR(path.segments()[1].point.x, arc.first.x, 1e-9);
        EXPECT_NEAR(path.segments()[1].point.y, arc.first.y, 1e-9);
        EXPECT_NEAR(path.currentPoint().x, arc.second.x, 1e-9);
        EXPECT_NEAR(path.currentPoint().y, arc.second.y, 1e-9);
        for (std::size_t i = 2; i < path.segments().size(); ++i) {
            ASSERT_EQ(path.segments()[i].element, Element::curveTo);
            for (double t = 0; t <= 1; t += 0.125) {
                const NSPoint point =
                    pointOnCurve(path.segments()[i - 1].point, path.segments()[i], t);
                EXPECT_NEAR(std::hypot(point.x - arc.center.x, point.y - arc.center.y),
                    std::abs(arc.radius), std::abs(arc.radius) * 3e-4);
            }
        }
    }
}

TEST(NSBezierPath, DegenerateArcsAreALineToTheCorner) {
    const struct {
        NSPoint corner, to;
        double radius;
    } rows[] = {
        {{10, 0}, {10, 10}, 0}, {{10, 0}, {20, 0}, 4}, // straight on
        {{10, 0}, {5, 0}, 4}, // straight back
        {{0, 0}, {10, 10}, 4}, // the corner is where the pen is
        {{10, 0}, {10, 0}, 4}, // no direction to leave by
    };
    for (const auto& row : rows) {
        NSBezierPath path;
        path.moveToPoint({0, 0});
        path.appendBezierPathWithArcFromPoint(row.corner, row.to, row.radius);
        ASSERT_EQ(path.segments().size(), 2u);
        EXPECT_EQ(path.segments()[1].element, Element::lineTo);
        EXPECT_EQ(path.currentPoint(), row.corner);
    }
}

TEST(NSBezierPath, GoesOnFromACurrentPointAndClosesToWhereTheFigureBegan) {
    NSBezierPath path;
    EXPECT_THROW(path.lineToPoint({1, 1}), NSException);
    EXPECT_THROW(path.appendBezierPathWithArcFromPoint({1, 1}, {2, 1}, 1), NSException);
    EXPECT_THROW(path.closePath(), NSException);
    EXPECT_TRUE(path.isEmpty());
    path.moveToPoint({1, 2});
    path.lineToPoint({3, 4});
    path.closePath();
    EXPECT_EQ(path.currentPoint(), (NSPoint {1, 2}));
}

} // namespace
