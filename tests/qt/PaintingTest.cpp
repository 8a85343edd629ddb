// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/NSImage.h>
#include <KWToolkitQt/ViewWidget.h>

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPicture>
#include <QPixmapCache>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace kw;

using Draw = std::function<void(NSGraphicsContext&)>;

/// A view that draws what it is told to.
struct Canvas : NSView {
    Canvas(NSRect frame, bool flipped, Draw toDraw)
        : NSView(frame)
        , isUpsideDown(flipped)
        , draw(std::move(toDraw)) { }
    bool isFlipped() const override { return isUpsideDown; }
    void drawRect(NSGraphicsContext& context, NSRect) override { draw(context); }

    bool isUpsideDown;
    Draw draw;
};

QImage render(std::shared_ptr<NSView> view, double ratio = 1) {
    qt::ViewWidget widget(std::move(view));
    widget.resize(widget.sizeHint());
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, {});
    return image;
}

QImage render(bool isFlipped, Draw draw) {
    return render(std::make_shared<Canvas>(NSMakeRect(0, 0, 40, 20), isFlipped, std::move(draw)));
}

NSBezierPath rectangle(double x, double y, double width, double height) {
    NSBezierPath path;
    path.moveToPoint({x, y});
    path.lineToPoint({x + width, y});
    path.lineToPoint({x + width, y + height});
    path.lineToPoint({x, y + height});
    path.closePath();
    return path;
}

/// The smallest rectangle of pixels that are not transparent.
QRect inked(const QImage& image, int leastAlpha = 128) {
    QRect result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() >= leastAlpha)
                result |= QRect(x, y, 1, 1);
        }
    }
    return result;
}

TEST(Painting, PutsTheOriginWhereTheViewHasIt) {
    const auto draw = [](NSGraphicsContext& context) {
        context.saveGraphicsState();
        context.setFillColor(NSColor::colorWithCalibratedRed(1, 0, 0, 1));
        context.restoreGraphicsState();
        context.fill(rectangle(0, 0, 10, 5));
    };
    EXPECT_EQ(inked(render(false, draw)), QRect(0, 15, 10, 5));
    EXPECT_EQ(inked(render(true, draw)), QRect(0, 0, 10, 5));
    EXPECT_EQ(render(true, draw).pixelColor(2, 2), QColor(Qt::black));
}

TEST(Painting, ClipsAndPlacesSubviews) {
    const auto fillAll = [](NSGraphicsContext& context) {
        context.fill(rectangle(-50, -50, 200, 200));
    };
    for (const bool isFlipped : {false, true}) {
        const auto root = std::make_shared<Canvas>(
            NSMakeRect(0, 0, 40, 20), isFlipped, [](NSGraphicsContext&) { });
        root->addSubview(std::make_shared<Canvas>(NSMakeRect(4, 2, 8, 6), !isFlipped, fillAll));
        EXPECT_EQ(inked(render(root)), QRect(4, isFlipped ? 2 : 12, 8, 6));
    }
}

TEST(Painting, RunsGradientsAtTheirAngleAndOnBeyondTheirStops) {
    const NSColor red = NSColor::colorWithCalibratedRed(1, 0, 0, 1);
    const NSColor blue = NSColor::colorWithCalibratedRed(0, 0, 1, 1);
    const struct {
        double angle;
        QPoint first, last;
    } rows[] {{0, {0, 10}, {39, 10}}, {-90, {20, 0}, {20, 19}}, {90, {20, 19}, {20, 0}},
        {-45, {0, 0}, {39, 19}}};
    for (const auto& row : rows) {
        const QImage image = render(false, [&](NSGraphicsContext& context) {
            context.drawGradient({{red, 0.1}, {blue, 0.9}}, rectangle(0, 0, 40, 20), row.angle);
        });
        EXPECT_EQ(image.pixelColor(row.first), QColor(Qt::red)) << row.angle;
        EXPECT_EQ(image.pixelColor(row.last), QColor(Qt::blue)) << row.angle;
    }
}

TEST(Painting, MeasuresTextAsItDrawsIt) {
    NSSize size, twice, standard, tiny;
    const auto draw = [&](NSGraphicsContext& context) {
        const TextAttributes attributes {NSFont::systemFontOfSize(10)};
        size = context.sizeOfText("Hgl", attributes);
        twice = context.sizeOfText("Hgl\nH", attributes);
        standard = context.sizeOfText("Hgl", {NSFont::systemFontOfSize(13)});
        tiny = context.sizeOfText("Hgl", {NSFont::systemFontOfSize(0)});
        context.drawText("Hgl", {5, 2}, attributes);
    };
    for (const bool isFlipped : {false, true}) {
        const QRect ink = inked(render(isFlipped, draw), 1);
        const QRectF box(5, isFlipped ? 2 : 18 - size.height, size.width, size.height);
        EXPECT_TRUE(box.toAlignedRect().contains(ink)) << isFlipped;
        EXPECT_GT(ink.height(), 7);
    }
    // Upright: the letter below, the descender, is on the right.
    const QImage upright = render(false, draw);
    const QRect ink = inked(upright);
    EXPECT_TRUE(inked(upright.copy(ink.adjusted(0, 0, -ink.width() / 2, 0))).bottom()
        < inked(upright.copy(ink)).bottom());
    EXPECT_NEAR(size.height, 10 * 1.2, 2);
    EXPECT_EQ(twice, (NSSize {size.width, 2 * size.height}));
    EXPECT_EQ(tiny, standard);
}

TEST(Painting, BlursShadowsEvenlyAndMovesThemUp) {
    const NSShadow shadow {.color = NSColor::blackColor(), .offset = {0, 4}, .blurRadius = 4};
    for (const bool isFlipped : {false, true}) {
        const QImage image = render(isFlipped, [&](NSGraphicsContext& context) {
            context.setShadow(shadow);
            context.setFillColor(NSColor::colorWithCalibratedRed(1, 0, 0, 1));
            context.fill(rectangle(14, 4, 12, 12));
        });
        EXPECT_EQ(image.pixelColor(20, 10), QColor(Qt::red));
        const auto alpha = [&](int x, int y) { return image.pixelColor(x, y).alpha(); };
        EXPECT_GT(alpha(20, 2), alpha(20, 17)); // y is up in a flipped view, too
        EXPECT_GT(alpha(20, 2), alpha(20, 0));
        EXPECT_NEAR(alpha(20, 0), 128, 24); // the edge of what was blurred
        EXPECT_EQ(alpha(12, 6), alpha(27, 6));
    }
}

/// Each pixel tells where it is: red grows to the right, green downward.
std::shared_ptr<NSBitmapImageRep> squareBitmap(int side) {
    auto bitmap = NSBitmapImageRep::initWithLayout(CGImageLayout::premultipliedRGBA(side, side));
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            bitmap->setColor(NSColor::colorWithDeviceRed(x * 8 / 255.0, y * 8 / 255.0, 1, 1), x, y);
    }
    return bitmap;
}

TEST(Painting, RepeatsAPatternImageByItsPixelsFromTheLowerLeftCorner) {
    for (const int side : {16, 32}) {
        const auto image = std::make_shared<NSImage>(NSSize {16, 16});
        image->addRepresentation(squareBitmap(side));
        const Draw draw = [&](NSGraphicsContext& context) {
            context.setFillColor(NSColor::colorWithPatternImage(image));
            context.fill(rectangle(0, 0, 70, 50));
        };
        for (const bool isFlipped : {false, true}) {
            for (const int ratio : {1, 2}) {
                const QImage picture = render(
                    std::make_shared<Canvas>(NSMakeRect(0, 0, 70, 50), isFlipped, draw), ratio);
                double worst = 0; // of all components
                for (int y = 0; y < picture.height(); ++y) {
                    for (int x = 0; x < picture.width(); ++x) {
                        const QColor seen = picture.pixelColor(x, y);
                        const int fromBottom = (picture.height() - 1 - y) / ratio % side;
                        worst = std::max({worst, std::fabs(seen.red() - x / ratio % side * 8),
                            std::fabs(seen.green() - (side - 1 - fromBottom) * 8),
                            std::fabs(seen.blue() - 255), std::fabs(seen.alpha() - 255)});
                    }
                }
                EXPECT_LE(worst, ratio == 1 ? 0 : 4) << side << ' ' << isFlipped << ' ' << ratio;
            }
        }
    }
}

TEST(Painting, PlacesPatternCellsByBoundsStepsAndMatrix) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    constexpr auto exact = CGPatternTiling::constantSpacing;
    const CGPatternCallbacks callbacks {0,
        [](void*, NSGraphicsContext& context) { context.fill(rectangle(-99, -99, 999, 999)); },
        nullptr};
    const struct {
        NSRect bounds;
        double xStep, yStep;
        CGAffineTransform matrix;
        CGPatternTiling tiling;
        double alpha;
        int expectedPixels;
    } rows[] {
        {NSMakeRect(0, 0, 4, 4), 8, 8, {}, exact, 1, 20 * 12},
        {NSMakeRect(2, 1, 4, 4), 8, -8, {}, exact, 0.5, 20 * 11},
        {NSMakeRect(0, 0, 4.5, 4), 8, 8, {2, 0, 0, 2, 0, 4}, exact, 1, 26 * 8},
        {NSMakeRect(0, 0, 12, 12), 8, 8, {}, exact, 1, 40 * 20},
        {NSMakeRect(0, 0, 2, 2), 4.4, 4.4, {}, CGPatternTiling::noDistortion, 1, 20 * 10},
        {NSMakeRect(0, 0, 4, 4), 8, 8, {}, exact, none, 0},
        {NSMakeRect(0, 0, 4, 4), 0, 8, {}, exact, 1, 0},
        {NSMakeRect(0, 0, 4, 4), 8, none, {}, exact, 1, 0},
        {NSMakeRect(0, 0, 4, 4), 1e300, 8, {}, exact, 1, 0},
        {NSMakeRect(0, 0, 0, 4), 8, 8, {}, exact, 1, 0},
        {NSMakeRect(0, none, 4, 4), 8, 8, {}, exact, 1, 0},
        {NSMakeRect(0, 0, 1e300, 4), 8, 8, {}, exact, 1, 0},
        {NSMakeRect(0, 0, 4, 4), 8, 8, {0, 0, 0, 0, 0, 0}, exact, 1, 0},
        {NSMakeRect(0, 0, 4, 4), 8, 8, {1, 0, 0, 1, none, 0}, exact, 1, 0},
    };
    for (const auto& row : rows) {
        const CGColor color(std::make_shared<CGPattern>(nullptr, row.bounds, row.matrix, row.xStep,
                                row.yStep, row.tiling, true, callbacks),
            row.alpha);
        const QImage image = render(true, [&](NSGraphicsContext& context) {
            context.setFillColor(color);
            context.fill(rectangle(0, 0, 40, 20));
        });
        int pixels = 0;
        for (int x = 0; x < 40; ++x) {
            for (int y = 0; y < 20; ++y)
                pixels += std::lround(row.alpha * 255) == image.pixelColor(x, y).alpha();
        }
        EXPECT_EQ(inked(image, 1).isEmpty() ? 0 : pixels, row.expectedPixels)
            << &row - std::begin(rows);
    }
}

TEST(Painting, ConvertsTheColorsOfContexts) {
    const std::pair<CGColor, QColor> rows[] {
        {{CGColorSpace::deviceGray, {0.2, 1}}, QColor(51, 51, 51)},
        {{CGColorSpace::calibratedRGB, {1, 0, 1, 0.2}}, QColor(255, 0, 255, 51)},
        {{CGColorSpace::deviceCMYK, {0, 1, 0.8, 0, 1}}, QColor(255, 0, 51)},
        {{CGColorSpace::pattern, {1}}, QColor(0, 0, 0, 0)},
    };
    for (const auto& [color, expected] : rows) {
        const QImage image = render(false, [&](NSGraphicsContext& context) {
            context.setFillColor(color);
            context.fill(rectangle(0, 0, 40, 20));
        });
        EXPECT_EQ(image.pixelColor(9, 9).rgba(), expected.rgba());
    }
}

TEST(Painting, DrawsImagesUprightWithTheirShadowAndSmoothWhenScaled) {
    const auto bitmap = squareBitmap(16);
    const auto striped = squareBitmap(16);
    for (int i = 0; i < 256; ++i)
        striped->setColor(NSColor::colorWithDeviceWhite(i % 8 == 0, 1), i % 16, i / 16);
    for (const bool isFlipped : {false, true}) {
        const QImage image = render(isFlipped, [&](NSGraphicsContext& context) {
            context.drawImage(*striped->CGImage(), NSMakeRect(36, 2, 2, 2));
            context.setShadow({NSColor::blackColor(), {5, 0}, 0});
            context.drawImage(*bitmap->CGImage(), NSMakeRect(8, 2, 16, 16));
        });
        EXPECT_EQ(image.pixelColor(8, 2), QColor(0, 0, 255));
        EXPECT_EQ(image.pixelColor(9, 16), QColor(8, 14 * 8, 255));
        EXPECT_EQ(image.pixelColor(26, 9), QColor(0, 0, 0)); // the shadow
        EXPECT_NEAR(image.pixelColor(36, isFlipped ? 2 : 17).lightness(), 32, 8);
    }
}

TEST(Painting, LaysLayersOverTheRestAsOnePicture) {
    // Squares that overlap between 10 and 14, and what their pixels are beside, below and in there.
    const auto squares = [](NSGraphicsContext& context) {
        context.fill(rectangle(4, 4, 10, 10));
        context.fill(rectangle(10, 4, 10, 10));
    };
    const struct {
        Draw draw;
        int alpha; // of the squares
        int shadow = 0; // 20 to their right
    } rows[] {
        {[&](auto& context) {
             context.beginTransparencyLayer(0.5);
             squares(context);
             context.endTransparencyLayer();
         },
            128},
        {[&](auto& context) {
             context.beginTransparencyLayer(0.5);
             context.clip(rectangle(0, 0, 20, 20));
             context.saveGraphicsState();
             context.beginTransparencyLayer(0.5);
             squares(context);
             context.restoreGraphicsState(); // not beyond the layer
             squares(context);
             context.endTransparencyLayer();
         },
            64},
        {[&](auto& context) { // a shadow of the whole that lies outside the clip
             context.clip(rectangle(20, 0, 20, 20));
             context.setShadow({NSColor::blackColor(), {20, 0}, 0});
             context.beginTransparencyLayer(0.25);
             squares(context);
             context.endTransparencyLayer();
             context.endTransparencyLayer(); // there is none
         },
            0, 64},
        {[&](auto& context) {
             context.beginTransparencyLayer(2);
             squares(context);
             context.endTransparencyLayer();
         },
            255},
        {[&](auto& context) {
             context.beginTransparencyLayer(std::numeric_limits<double>::quiet_NaN());
             squares(context);
             context.beginTransparencyLayer(0.5);
             squares(context);
             context.endTransparencyLayer();
             squares(context);
             context.endTransparencyLayer();
         },
            0},
    };
    for (const auto& row : rows) {
        for (const int ratio : {1, 2}) {
            const QImage image = render(
                std::make_shared<Canvas>(NSMakeRect(0, 0, 40, 20), ratio == 2, row.draw), ratio);
            const auto alpha = [&](int x) {
                return image.pixelColor(x * ratio, 9 * ratio).alpha();
            };
            for (const int x : {5, 12, 18})
                EXPECT_NEAR(alpha(x), row.alpha, 1) << &row - std::begin(rows) << ' ' << x;
            EXPECT_NEAR(alpha(32), row.shadow, 1) << &row - std::begin(rows);
            EXPECT_EQ(alpha(2), 0);
        }
    }
}

TEST(Painting, RestoresTransformsAndClips) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const struct {
        CGAffineTransform transform;
        NSBezierPath clip; // before it
        QRect ink; // of a square of 10 by 10, upside down
    } rows[] {
        {{1, 0, 0, 1, 3, 4}, rectangle(0, 0, 40, 20), {3, 4, 10, 10}},
        {{2, 0, 0, 1, 0, 0}, rectangle(5, 5, 10, 10), {5, 5, 10, 5}},
        {{0, 1, -1, 0, 30, 0}, rectangle(0, 0, 40, 20), {20, 0, 10, 10}}, // a quarter turn
        {{1, 0, 0, 1, 0, 0}, {}, {}},
        {{0, 0, 0, 1, 0, 0}, rectangle(0, 0, 40, 20), {}},
        {{1, 0, 0, 1, none, 0}, rectangle(0, 0, 40, 20), {}},
    };
    for (const auto& row : rows) {
        for (const double alpha : {0.5, 1.0}) {
            const QImage image = render(true, [&](NSGraphicsContext& context) {
                context.beginTransparencyLayer(alpha);
                context.clip(row.clip);
                context.concat(row.transform);
                context.fill(rectangle(0, 0, 10, 10));
                context.endTransparencyLayer();
                context.fill(rectangle(38, 18, 2, 2));
            });
            EXPECT_EQ(image.pixelColor(39, 19).alpha(), 255);
            EXPECT_EQ(inked(image.copy(0, 0, 38, 20), 127), row.ink) << &row - std::begin(rows);
        }
    }
}

TEST(Painting, KeepsShadowsAndPatternsWhereTheyAreUnderATransform) {
    const auto image = std::make_shared<NSImage>(NSSize {16, 16});
    image->addRepresentation(squareBitmap(16));
    for (const double alpha : {0.5, 1.0}) {
        const QImage picture = render(false, [&](NSGraphicsContext& context) {
            context.beginTransparencyLayer(alpha);
            context.setFillColor(NSColor::colorWithPatternImage(image));
            context.concat({0, 2, -2, 0, 20, 0}); // a quarter turn, twice as large
            context.setShadow({NSColor::blackColor(), {8, 0}, 0});
            context.fill(rectangle(2, 2, 5, 5));
        });
        EXPECT_EQ(inked(picture, 127), QRect(6, 6, 18, 10));
        EXPECT_NEAR(picture.pixelColor(8, 9).red(), 8 * 8, 2);
        EXPECT_NEAR(picture.pixelColor(8, 9).green(), (9 - 20 + 16) * 8, 2);
        EXPECT_EQ(picture.pixelColor(20, 10).lightness(), 0);
    }
}

TEST(Painting, KeepsThemInALayerUnderAClipAndAfterIt) {
    const auto image = std::make_shared<NSImage>(NSSize {16, 16});
    image->addRepresentation(squareBitmap(16));
    const Draw square = [&](NSGraphicsContext& context) {
        context.setFillColor(NSColor::colorWithPatternImage(image));
        context.setShadow({NSColor::blackColor(), {6, 0}, 0});
        context.fill(rectangle(14, 6, 8, 8));
    };
    const double none = std::numeric_limits<double>::quiet_NaN();
    const NSShadow layerShadows[] {
        {NSColor::blackColor(), {1e6, 0}, 0}, {NSColor::blackColor(), {none, 0}, 0}};
    for (const NSShadow& shadow : layerShadows) {
        for (const bool isAfter : {false, true}) {
            const QImage picture = render(true, [&](NSGraphicsContext& context) {
                context.clip(rectangle(11, 5, 29, 15));
                context.setShadow(shadow);
                context.beginTransparencyLayer(0.5);
                if (isAfter)
                    context.endTransparencyLayer();
                square(context);
            });
            EXPECT_EQ(inked(picture, 127), QRect(14, 6, 14, 8));
            EXPECT_NEAR(picture.pixelColor(18, 9).red(), 2 * 8, 2);
            EXPECT_NEAR(picture.pixelColor(18, 9).green(), (9 - 20 + 16) * 8, 2);
            EXPECT_EQ(picture.pixelColor(26, 10).lightness(), 0);
        }
    }
}

TEST(Painting, LeavesAPainterAsItWasAlsoWithoutPixels) {
    const auto root =
        std::make_shared<Canvas>(NSMakeRect(0, 0, 40, 20), true, [](NSGraphicsContext& context) {
            context.saveGraphicsState();
            context.beginTransparencyLayer(0.5);
            context.fill(rectangle(0, 0, 10, 10));
            context.concat({2, 0, 0, 2, 0, 0});
            context.clip({});
            context.saveGraphicsState();
            context.beginTransparencyLayer(1);
        });
    root->addSubview(std::make_shared<Canvas>(NSMakeRect(20, 0, 10, 10), true,
        [](NSGraphicsContext& context) { context.fill(rectangle(0, 0, 99, 99)); }));
    const QImage image = render(root);
    QPicture picture;
    qt::ViewWidget(root).render(&picture, {}, {}, {});
    QImage played(image.size(), image.format());
    played.fill(Qt::transparent);
    QPainter(&played).drawPicture(0, 0, picture);
    for (const QImage& result : {image, played}) {
        EXPECT_EQ(inked(result, 1), QRect(0, 0, 30, 10));
        EXPECT_NEAR(result.pixelColor(5, 5).alpha(), 128, 1);
        EXPECT_EQ(inked(result), QRect(20, 0, 10, 10));
    }
}

/// Draws into a picture of 40 by 20 points.
QImage renderAt(double ratio, bool isFlipped, const Draw& draw) {
    return render(std::make_shared<Canvas>(NSMakeRect(0, 0, 40, 20), isFlipped, draw), ratio);
}

NSBezierPath line(NSPoint from, NSPoint to, double width) {
    NSBezierPath path;
    path.moveToPoint(from);
    path.lineToPoint(to);
    path.setLineWidth(width);
    return path;
}

TEST(Painting, PaintsWholePixelsWithoutAntialiasing) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const struct {
        bool isFlipped;
        double ratio;
        NSBezierPath path;
        QRect ink;
    } rows[] {
        {false, 1, line({0, 19}, {40, 19}, 1), {0, 1, 40, 1}}, // a point below the upper edge
        {false, 1, line({0, 18}, {40, 18}, 1), {0, 2, 40, 1}},
        {true, 1, line({0, 1}, {40, 1}, 1), {0, 1, 40, 1}},
        {false, 1, line({7, 0}, {7, 20}, 1), {7, 0, 1, 20}},
        {false, 1.5, line({0, 19}, {40, 19}, 1), {0, 1, 60, 1}},
        {false, 1.5, line({0, 18}, {40, 18}, 1), {0, 2, 60, 2}},
        {false, 2, line({0, 19}, {40, 19}, 1), {0, 1, 80, 2}},
        {false, 2, line({0, 18}, {40, 18}, 1), {0, 3, 80, 2}},
        {false, 1, line({0, 9.5}, {40, 9.5}, 0), {0, 10, 40, 1}},
        {false, 2, line({0, 9.75}, {40, 9.75}, 0), {0, 20, 80, 1}},
        {false, 2, line({0, 9.75}, {40, 9.75}, -3), {0, 20, 80, 1}},
        {false, 1, line({0, 9.5}, {40, 9.5}, none), {}},
    };
    for (const auto& row : rows) {
        const QImage image = renderAt(row.ratio, row.isFlipped, [&](NSGraphicsContext& context) {
            context.saveGraphicsState();
            context.setShouldAntialias(false);
            context.stroke(row.path);
            context.restoreGraphicsState();
        });
        EXPECT_EQ(inked(image, 1), row.ink) << &row - std::begin(rows);
        EXPECT_EQ(inked(image, 255), row.ink) << &row - std::begin(rows);
    }
    const auto grays = [](bool antialias) {
        const QImage image = renderAt(1, false, [&](NSGraphicsContext& context) {
            context.saveGraphicsState();
            context.setShouldAntialias(!antialias);
            context.restoreGraphicsState();
            context.setShouldAntialias(antialias);
            context.drawText("S", {2, 2}, {NSFont::systemFontOfSize(14)});
            context.stroke(line({20, 2}, {38, 17}, 2));
        });
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y).alpha() % 255 != 0;
        }
        return count;
    };
    EXPECT_GT(grays(true), 0);
    EXPECT_EQ(grays(false), 0);
}

TEST(Painting, SetsTextInRectanglesFromTheirUpperEdgeOn) {
    const auto attributes = [](NSTextAlignment alignment, NSLineBreakMode mode) {
        return TextAttributes {
            NSFont::systemFontOfSize(6), NSColor::blackColor(), {}, {alignment, mode}};
    };
    constexpr auto left = NSTextAlignmentLeft;
    constexpr auto tail = NSLineBreakByTruncatingTail;
    const char* const hebrew = "\u05d0\u05d1";
    const NSRect place = NSMakeRect(4, 3, 30, 14);
    const struct {
        const char* text;
        TextAttributes attributes;
        const char* sameAs; // a text at a point
        double share; // of the space beside it, on its left
        const char* second = ""; // of two lines
    } rows[] {
        {"ab", attributes(left, tail), "ab", 0},
        {"ab", attributes(NSTextAlignmentRight, tail), "ab", 1},
        {"ab", attributes(NSTextAlignmentCenter, tail), "ab", 0.5},
        {"ab", attributes(NSTextAlignmentNatural, tail), "ab", 0},
        {hebrew, attributes(NSTextAlignmentNatural, tail), hebrew, 1},
        {hebrew, attributes(left, tail), hebrew, 0},
        {"ab\ncd", attributes(left, tail), "ab", 0, "cd"},
        {"ab cdef gh", attributes(left, NSLineBreakByWordWrapping), "ab cdef", 0, "gh"},
        {"abcdefghiklmno", attributes(left, NSLineBreakByCharWrapping), "abcdefghi", 0, "klmno"},
        {"abcdefghiklmno", attributes(left, tail), "abcdef\u2026", 0},
        {"abcdefghiklmno", attributes(left, NSLineBreakByTruncatingHead), "\u2026hiklmno", 0},
        {"abcdefghiklmno", attributes(left, NSLineBreakByTruncatingMiddle), "ab\u2026no", 0},
        {"\xff\xc3", attributes(left, tail), "\ufffd\ufffd", 0},
    };
    for (const bool isFlipped : {false, true}) {
        for (const double ratio : {1.0, 1.5, 2.0}) {
            for (const auto& row : rows) {
                const QImage set = renderAt(ratio, isFlipped, [&](NSGraphicsContext& context) {
                    context.drawTextInRect(row.text, place, row.attributes);
                });
                const QImage expected = renderAt(ratio, isFlipped, [&](NSGraphicsContext& context) {
                    const NSSize size = context.sizeOfText(row.sameAs, row.attributes);
                    NSPoint origin {
                        4 + (30 - size.width) * row.share, isFlipped ? 3 : 17 - size.height};
                    context.drawText(row.sameAs, origin, row.attributes);
                    origin.y += isFlipped ? size.height : -size.height;
                    context.drawText(row.second, origin, row.attributes);
                });
                EXPECT_FALSE(inked(set, 1).isEmpty());
                EXPECT_EQ(set, expected) << &row - std::begin(rows) << ' ' << ratio;
            }
        }
    }
    const QImage clipped = renderAt(1, false, [&](NSGraphicsContext& context) {
        context.drawTextInRect("\u2588\u2588\u2588\u2588\u2588\u2588\u2588", place,
            attributes(NSTextAlignmentCenter, NSLineBreakByClipping));
    });
    EXPECT_EQ(inked(clipped, 1).left(), 4);
    EXPECT_EQ(inked(clipped, 1).right(), 33);
}

QStringList warnings;

TEST(Painting, DrawsNothingWhereANumberIsNone) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    warnings.clear();
    const auto former = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { warnings += text; });
    const TextAttributes attributes {.font = NSFont::systemFontOfSize(none),
        .shadow = NSShadow {NSColor::blackColor(), {none, 0}, endless}};
    for (const double bad : {none, endless, -endless}) {
        for (const bool hasShadow : {false, true}) {
            const QImage image = renderAt(1, false, [&](NSGraphicsContext& context) {
                if (hasShadow)
                    context.setShadow({NSColor::blackColor(), {2, 2}, 1e9});
                const NSGradient gradient {{NSColor::redColor(), 0}, {NSColor::redColor(), 1}};
                context.fill(rectangle(bad, 0, 9, 9));
                context.fill(rectangle(0, 0, 9, bad));
                context.stroke(line({0, bad}, {40, 20}, 1));
                context.stroke(line({0, 0}, {40, 20}, bad));
                context.drawGradient(gradient, rectangle(0, bad, 9, 9), 0);
                context.drawGradient(gradient, rectangle(0, 0, 9, 9), bad);
                context.drawText("x", {bad, 0}, attributes);
                context.drawTextInRect("x", NSMakeRect(0, bad, 9, 9), attributes);
                context.drawTextInRect("x", NSMakeRect(0, 0, bad, 9), attributes);
                context.drawTextInRect("x", NSMakeRect(0, 0, 0, 9), attributes);
                context.fill(rectangle(1e300, 1e300, 9, 9));
                context.fill(rectangle(1e12, 0, 9, 9));
                context.clip(rectangle(0, 0, bad, 9));
                context.fill(rectangle(0, 0, 9, 9));
            });
            EXPECT_EQ(inked(image, 1), QRect()) << bad;
        }
    }
    qInstallMessageHandler(former);
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

TEST(Painting, KeepsShadowsOfShapesWithoutMixingThemUp) {
    const auto badge = [](double x, double height, double alpha, double blur,
                           double gradientAlpha) {
        return [=](NSGraphicsContext& context) {
            context.setShadow({NSColor::blackColor(), {2, -2}, blur});
            const auto path =
                NSBezierPath::bezierPathWithRoundedRect(NSMakeRect(x, 6, 12, height), 4, 4);
            const auto clear = NSColor::colorWithDeviceRed(1, 0, 0, gradientAlpha);
            if (gradientAlpha > 0) {
                context.drawGradient({{NSColor::redColor(), 0}, {clear, 1}}, path, 0);
                return;
            }
            context.setFillColor(NSColor::colorWithDeviceRed(1, 0, 0, alpha));
            context.fill(path);
        };
    };
    const Draw rows[] {badge(6, 8, 1, 3, 0), badge(6, 8, 0.5, 3, 0), badge(6, 7, 1, 3, 0),
        badge(6.5, 8, 1, 3, 0), badge(6, 8, 1, 2, 0), badge(6, 8, 1, 3, 0.25)};
    for (const double ratio : {1.0, 1.5, 2.0}) {
        std::vector<QImage> first;
        for (const Draw& draw : rows) {
            QPixmapCache::clear();
            first.push_back(renderAt(ratio, false, draw));
        }
        for (std::size_t i = 0; i < first.size(); ++i) {
            EXPECT_EQ(renderAt(ratio, false, rows[i]), first[i]) << i; // the last left its own
            for (std::size_t other = 0; other < i; ++other)
                EXPECT_NE(first[i], first[other]) << i << ' ' << other;
        }
        // Scrolled by whole pixels and by parts of them.
        for (const double shift : {6.0, 6.3}) {
            const Draw scrolled = [&](NSGraphicsContext& context) {
                context.concat({1, 0, 0, 1, shift, 0});
                rows[0](context);
            };
            const QImage kept = renderAt(ratio, false, scrolled);
            QPixmapCache::clear();
            EXPECT_EQ(kept, renderAt(ratio, false, scrolled));
            if (shift == 6.0) {
                const int pixels = static_cast<int>(shift * ratio);
                const QSize seen(first[0].width() - pixels, first[0].height());
                EXPECT_EQ(kept.copy(QRect({pixels, 0}, seen)), first[0].copy(QRect({}, seen)));
            }
        }
    }
}

TEST(Painting, MeasuresWithoutAContextAsWithOne) {
    for (const TextAttributes& attributes : {TextAttributes {NSFont::systemFontOfSize(11)},
             TextAttributes {NSFont::boldSystemFontOfSize(17)},
             TextAttributes {NSFont::fontWithName("DejaVu Serif", 9.5)}}) {
        for (const char* const text : {"", "Hgl", "two\nlines ", "\u05d0\u05d1 \u6f22"}) {
            render(false, [&](NSGraphicsContext& context) {
                EXPECT_EQ(Platform::textMetrics().sizeOfText(text, attributes),
                    context.sizeOfText(text, attributes));
            });
        }
    }
    const QColor base = QGuiApplication::palette().color(QPalette::Active, QPalette::Base);
    EXPECT_NEAR(NSColor::textBackgroundColor().redComponent(), base.redF(), 1e-4);
}

TEST(Painting, TheRecorderIsAKeyCapWithWhiteTextAtAnyRatio) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const QImage image =
            render(std::make_shared<KWHotkeyView>(NSMakeRect(0, 0, 260, 56)), ratio);
        const auto lightness = [&](double x, double y) {
            return image.pixelColor(QPointF(x * ratio, y * ratio).toPoint()).lightness();
        };
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        EXPECT_LT(lightness(130, 2), lightness(130, 3.5)); // the outline
        EXPECT_GT(lightness(20, 4), lightness(20, 30)); // lighter at the top
        EXPECT_GT(lightness(20, 20), lightness(20, 40));
        int white = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                white += image.pixelColor(x, y).lightness() > 240;
        }
        EXPECT_GT(white, 200 * ratio * ratio);
    }
}

} // namespace
