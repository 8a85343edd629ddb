// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSView.h>

#include <KWToolkit/platform/headless/HeadlessViewHost.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

struct FlippedView : NSView {
    using NSView::NSView;
    bool isFlipped() const override { return true; }
};

struct NSViewTest : testing::Test {
    NSViewTest() {
        root->setHost(&host);
        flipped->addSubview(inner);
        root->addSubview(flipped);
        host.dirty.clear();
    }
    ~NSViewTest() override { root->setHost(nullptr); }

    HeadlessViewHost host;
    std::shared_ptr<NSView> root = std::make_shared<NSView>(NSMakeRect(0, 0, 200, 100));
    std::shared_ptr<NSView> flipped = std::make_shared<FlippedView>(NSMakeRect(10, 20, 100, 60));
    std::shared_ptr<NSView> inner = std::make_shared<NSView>(NSMakeRect(5, 5, 20, 10));
};

TEST_F(NSViewTest, ConvertsThroughAFlippedView) {
    // The inner view's lower left: 5 right of the flipped view's left, 15 below its top at y 80.
    EXPECT_EQ(inner->convertToSuperview({0, 0}), (NSPoint {5, 15}));
    EXPECT_EQ(flipped->convertToSuperview({5, 15}), (NSPoint {15, 65}));
    EXPECT_EQ(inner->convertFromWindow({15, 65}), (NSPoint {0, 0}));
    EXPECT_EQ(inner->convertFromWindow({20, 70}), (NSPoint {5, 5}));
}

TEST_F(NSViewTest, HitTestFindsTheFrontMostVisibleView) {
    EXPECT_EQ(root->hitTest({16, 66}), inner.get());
    EXPECT_EQ(root->hitTest({16, 64}), flipped.get());
    EXPECT_EQ(root->hitTest({1, 1}), root.get());
    EXPECT_EQ(root->hitTest({200, 50}), nullptr);
    inner->setHidden(true);
    EXPECT_EQ(root->hitTest({16, 66}), flipped.get());
    const auto above = std::make_shared<NSView>(NSMakeRect(10, 20, 10, 60));
    root->addSubview(above);
    EXPECT_EQ(root->hitTest({16, 66}), above.get());
}

TEST_F(NSViewTest, RedrawRequestsReachTheHostInItsCoordinates) {
    inner->setNeedsDisplay();
    inner->setNeedsDisplayInRect(NSMakeRect(-5, -5, 10, 10));
    inner->setNeedsDisplayInRect(NSMakeRect(30, 0, 10, 10));
    EXPECT_EQ(host.dirty, (std::vector {NSMakeRect(15, 65, 20, 10), NSMakeRect(15, 65, 5, 5)}));
}

TEST_F(NSViewTest, ViewsComeAndGoOneByOne) {
    inner->addSubview(root); // no circles
    inner->addSubview(inner);
    inner->addSubview(nullptr);
    ASSERT_TRUE(inner->subviews().empty());
    ASSERT_EQ(root->superview(), nullptr);

    root->addSubview(inner);
    EXPECT_EQ(host.gone, (std::vector {inner.get()})); // from where it was
    EXPECT_TRUE(flipped->subviews().empty());
    EXPECT_EQ(inner->host(), &host);
    EXPECT_EQ(inner->nextResponder(), root.get());

    flipped->addSubview(inner);
    flipped->removeFromSuperview();
    flipped.reset(); // takes nobody with it
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(inner->host(), nullptr);
    EXPECT_EQ(inner->nextResponder(), nullptr);
    EXPECT_EQ(inner->convertToSuperview({0, 0}), (NSPoint {5, 5}));
}

} // namespace
