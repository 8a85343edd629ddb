// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkitQt/ViewWidget.h>

#include <gtest/gtest.h>

#include <QImage>

#include <functional>

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
