// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CALayer.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkitQt/ViewWidget.h>

#include <gtest/gtest.h>

#include "Window.h"

#include <QImage>

namespace {

using namespace kw;
using Layer = std::shared_ptr<CALayer>;

CGColor rgb(double red, double green, double blue) {
    return {CGColorSpace::deviceRGB, {red, green, blue, 1}};
}

Layer layerAt(const NSRect& frame, const CGColor& color, const Layer& superlayer) {
    auto layer = std::make_shared<CALayer>();
    layer->setFrame(frame);
    layer->setBackgroundColor(color);
    superlayer->addSublayer(layer);
    return layer;
}

QImage render(const std::shared_ptr<NSView>& view, double ratio = 1) {
    qt::ViewWidget widget(view);
    widget.resize(widget.sizeHint());
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    widget.render(&image, {}, {}, {});
    return image;
}

TEST(Layer, IsDrawnWithYUpAlsoWhereTheViewIsFlipped) {
    // A picture whose upper half is red and whose lower half is blue.
    const auto pixels =
        std::shared_ptr<std::uint8_t[]>(new std::uint8_t[8] {255, 0, 0, 255, 0, 0, 255, 255});
    const CGImageRef picture = CGImage::create(CGImageLayout::premultipliedRGBA(1, 2), pixels);
    for (const bool isFlipped : {false, true}) {
        for (const double ratio : {1.0, 2.0}) {
            const auto view = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 20), isFlipped);
            const auto root = std::make_shared<CALayer>();
            view->setLayer(root);
            root->setBackgroundColor(rgb(0, 1, 0));
            root->setOpacity(0.5F);
            layerAt(NSMakeRect(0, 0, 10, 10), rgb(1, 1, 1), root);
            const Layer over = layerAt(NSMakeRect(20, 10, 10, 10), rgb(1, 1, 1), root);
            over->setContents(picture);
            over->setBorderWidth(1);
            over->setMasksToBounds(true);
            layerAt(NSMakeRect(5, -5, 10, 10), rgb(1, 1, 1), over);
            const QImage image = render(view, ratio);
            // Red, green and blue in halves: pictures are smoothed.
            const auto at = [&](double x, double y) {
                const QColor color = image.pixelColor((QPointF(x, y) * ratio).toPoint());
                const auto halves = [](int part) { return (part + 64) / 128; };
                return 100 * halves(color.red()) + 10 * halves(color.green())
                    + halves(color.blue());
            };
            // Once half transparent, however many layers lie there.
            EXPECT_EQ(at(4, 4), 10);
            EXPECT_EQ(at(4, 15), 111);
            EXPECT_EQ(at(22, 2), 100);
            EXPECT_EQ(at(22, 7), 1);
            EXPECT_EQ(at(27, 7), 111); // the sublayer, over the picture
            EXPECT_EQ(at(20, 2), 0); // the border
            EXPECT_EQ(at(32, 7), 10); // cut off
            EXPECT_EQ(at(27, 12), 10);
        }
    }
}

TEST(Layer, LiesBelowWhatSubviewsDraw) {
    const auto view = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 20));
    view->setLayer(std::make_shared<CALayer>());
    layerAt(NSMakeRect(0, 0, 40, 20), rgb(1, 0, 0), view->layer());
    struct Green : NSView {
        using NSView::NSView;
        void drawRect(NSGraphicsContext& context, NSRect rect) override {
            NSBezierPath path;
            path.moveToPoint(rect.origin);
            path.lineToPoint({rect.size.width, 0});
            path.lineToPoint({rect.size.width, rect.size.height});
            path.lineToPoint({0, rect.size.height});
            context.setFillColor(NSColor::colorWithDeviceRed(0, 1, 0, 1));
            context.fill(path);
        }
    };
    view->addSubview(std::make_shared<Green>(NSMakeRect(10, 0, 10, 20)));
    const QImage image = render(view);
    EXPECT_EQ(image.pixelColor(5, 10), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(15, 10), QColor(0, 255, 0));
}

TEST(Layer, MovesOnTheScreenUntilItIsThere) {
    const auto view = std::make_shared<Probe>(NSMakeRect(0, 0, 100, 20));
    const auto root = std::make_shared<CALayer>();
    view->setLayer(root);
    const Layer layer = layerAt(NSMakeRect(0, 0, 10, 20), rgb(1, 0, 0), root);
    Window window(view);
    CATransaction::flush();
    bool isOver = false;
    CATransaction::setCompletionBlock([&isOver] { isOver = true; });
    layer->setPosition({95, 10});
    view->drawn.clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isOver; }));
    EXPECT_GT(view->drawn.size(), 3U); // on the way
    EXPECT_EQ(window.views->grab().toImage().pixelColor(95, 10), QColor(Qt::red));
}

} // namespace
