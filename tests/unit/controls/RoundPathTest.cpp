// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSBezierPath+RoundPath.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;
using Element = NSBezierPath::Element;

std::vector<NSPoint> linePoints(const NSBezierPath& path) {
    std::vector<NSPoint> points;
    for (const auto& segment : path.segments()) {
        if (segment.element == Element::moveTo || segment.element == Element::lineTo)
            points.push_back(segment.point);
    }
    return points;
}

TEST(RoundPath, SharpOutlineShowsTheGrid) {
    const struct {
        const char* name;
        NSRect rect;
        double border; // the call narrows it
        std::vector<NSPoint> points; // the start, then the four corners
    } rows[] = {
        {"border", NSMakeRect(0, 0, 100, 20), 2, {{50, 1}, {99, 1}, {99, 19}, {1, 19}, {1.5, 1.5}}},
        {"fractions snap outward", NSMakeRect(0.3, 0.3, 10.4, 10.4), 0,
            {{6, 0}, {11, 0}, {11, 11}, {0, 11}, {0.5, 0.5}}},
        {"the border is a float, a little over 0.1", NSMakeRect(0.9499999999, 0, 10, 10), 0.1,
            {{6, 0}, {11, 0}, {11, 10}, {1, 10}, {1.5, 0.5}}},
        {"negative origins truncate toward zero", NSMakeRect(-10, -10, 20, 20), 0,
            {{0, -9}, {10, -9}, {10, 10}, {-9, 10}, {-9.5, -9.5}}},
        {"border wider than the rectangle", NSMakeRect(30, 30, 4, 4), 6,
            {{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0.5, 0.5}}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(linePoints(roundBezierPath(row.rect, 0, row.border)), row.points) << row.name;
}

TEST(RoundPath, RoundsTheCornersOfItsKind) {
    const NSRect rect = NSMakeRect(0, 0, 100, 40);
    const auto kinds = [](const NSBezierPath& path) {
        std::string text;
        for (const auto& segment : path.segments())
            text += "mlcz"[static_cast<int>(segment.element)];
        return text;
    };
    // The last corner, off the grid, takes two curves: its turn is a little over a quarter circle.
    EXPECT_EQ(kinds(roundBezierPath(rect, 10, 0)).substr(0, 7), "mlclclc");
    EXPECT_EQ(kinds(halfBottomRoundBezierPath(rect, 10, 0)), "mllclclz");
    EXPECT_EQ(kinds(halfTopRoundBezierPath(rect, 10, 0)).substr(0, 6), "mlclll");

    const auto bottom = halfBottomRoundBezierPath(rect, 10, 0).segments();
    EXPECT_EQ(bottom[1].point, (NSPoint {100, 0}));
    EXPECT_EQ(bottom[2].point, (NSPoint {100, 30}));
    EXPECT_EQ(bottom[3].point, (NSPoint {90, 40}));
    EXPECT_EQ(bottom[6].point, (NSPoint {0.5, 0.5}));
    // A radius of more than half a side is taken as it is.
    const auto wide = roundBezierPath(rect, 60, 0).segments();
    EXPECT_EQ(wide[1].point, (NSPoint {40, 0}));
    EXPECT_EQ(wide[2].point, (NSPoint {100, 60}));
}

TEST(RoundPath, HugeRectanglesDoNotTrap) {
    for (const double size : {1e10, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")})
        EXPECT_FALSE(roundBezierPath(NSMakeRect(size, size, size, size), 10, 4).isEmpty());
}

TEST(RoundPath, CenterRectInRect) {
    const NSRect in = NSMakeRect(0, 0, 100, 50);
    EXPECT_EQ(centerRectInRect(NSMakeRect(7, 7, 10, 10), in), NSMakeRect(45, 20, 10, 10));
    EXPECT_EQ(centerRectInRect(NSMakeRect(0, 0, 200, 10), in), NSMakeRect(-50, 20, 200, 10));
    EXPECT_EQ(centerRectInRect(NSMakeRect(0, 0, 3, 3), NSMakeRect(1, 1, 10, 10)),
        NSMakeRect(4.5, 4.5, 3, 3));
}

} // namespace
