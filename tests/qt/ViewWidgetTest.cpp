// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewWidget.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Window.h"

#include <stdexcept>

namespace {

using namespace kw;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

/// A plain root, 100 by 80, with one probe on its left and one on its right.
struct Pair {
    Pair() {
        root->addSubview(left);
        root->addSubview(right);
    }
    std::shared_ptr<NSView> root = std::make_shared<NSView>(NSMakeRect(0, 0, 100, 80));
    std::shared_ptr<Probe> left = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 20));
    std::shared_ptr<Probe> right = std::make_shared<Probe>(NSMakeRect(50, 0, 40, 20));
};

TEST(ViewWidget, SendsClicksToTheViewUnderThemUntilTheButtonIsUp) {
    const Pair views;
    Window window(views.root);
    QTest::mousePress(window.views, Qt::LeftButton, Qt::AltModifier, {55, 79});
    EXPECT_EQ(views.right->last.locationInWindow, (NSPoint {55.5, 0.5}));
    EXPECT_EQ(views.right->last.modifierFlags, NSEventModifierFlagOption);
    QTest::mouseMove(window.views, {5, 70});
    QTest::mouseRelease(window.views, Qt::LeftButton, {}, {5, 0});
    EXPECT_EQ(views.right->last.locationInWindow, (NSPoint {5.5, 79.5}));
    EXPECT_THAT(views.right->log, ElementsAre("become", "down", "dragged", "up"));
    EXPECT_THAT(views.left->log, ElementsAre());

    QTest::mouseClick(window.views, Qt::RightButton, {}, {5, 70});
    window.click({5, 40}); // the root alone is there
    EXPECT_THAT(views.left->log, ElementsAre());

    window.click({5, 70});
    QTest::mouseDClick(window.views, Qt::LeftButton, {}, {5, 70});
    EXPECT_EQ(views.left->last.clickCount, 2);
    window.click({35, 70});
    EXPECT_EQ(views.left->last.clickCount, 1);
}

TEST(ViewWidget, SwallowsTheClickThatActivatesUnlessTheViewWantsIt) {
    const Pair views;
    views.right->takesFirstMouse = true;
    Window window(views.root);
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    window.click({5, 70});
    EXPECT_THAT(views.left->log, ElementsAre());
    window.click({55, 70});
    EXPECT_THAT(views.right->log, ElementsAre("down", "up"));
}

TEST(ViewWidget, MovesTheFocusThroughTheViewsByClickTabAndQt) {
    const Pair views;
    Window window(views.root);
    EXPECT_EQ(window.views->firstResponder(), nullptr);
    window.click({55, 70});
    EXPECT_EQ(window.views->firstResponder(), views.right.get());
    EXPECT_THAT(views.left->takeLog(), ElementsAre()); // not even for a moment
    views.right->takeLog();

    QTest::keyPress(window.views, Qt::Key_Backtab);
    EXPECT_THAT(views.right->takeLog(), ElementsAre("resign"));
    EXPECT_THAT(views.left->takeLog(), ElementsAre("become"));
    QTest::keyPress(window.views, Qt::Key_Tab);
    EXPECT_THAT(views.left->takeLog(), ElementsAre("resign"));
    QTest::keyPress(window.views, Qt::Key_Tab);
    EXPECT_TRUE(window.other->hasFocus());
    EXPECT_THAT(views.right->takeLog(), ElementsAre("become", "resign"));

    QTest::keyPress(window.other, Qt::Key_Backtab);
    EXPECT_THAT(views.right->takeLog(), ElementsAre("become"));

    QFocusEvent menuOpened(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(window.views, &menuOpened);
    EXPECT_THAT(views.right->takeLog(), ElementsAre());
}

TEST(ViewWidget, LetsGoOfViewsThatLeave) {
    const Pair views;
    Window window(views.root);
    auto branch = std::make_shared<NSView>(NSMakeRect(0, 20, 40, 20));
    auto leaf = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 20));
    branch->addSubview(leaf);
    views.root->addSubview(branch);
    QTest::mousePress(window.views, Qt::LeftButton, {}, {5, 50});
    EXPECT_EQ(window.views->firstResponder(), leaf.get());
    leaf->takeLog();
    branch->removeFromSuperview();
    branch.reset();
    EXPECT_THAT(leaf->takeLog(), ElementsAre("resign"));
    EXPECT_EQ(window.views->firstResponder(), nullptr);
    leaf.reset();
    QTest::mouseRelease(window.views, Qt::LeftButton, {}, {5, 50});
    QTest::keyClick(window.views, Qt::Key_A);
}

TEST(ViewWidget, LeavesTheViewsInPeaceWhenItIsDestroyed) {
    const Pair views;
    {
        Window window(views.root);
        window.click({5, 70});
        views.left->takeLog();
    }
    EXPECT_THAT(views.left->takeLog(), ElementsAre("resign"));
    EXPECT_EQ(views.root->host(), nullptr);
    EXPECT_EQ(views.root->nextResponder(), nullptr);
    views.left->setNeedsDisplay();
}

TEST(ViewWidget, LeavesKeysThatNoViewTakesToItsParent) {
    struct Quiet : NSView {
        using NSView::NSView;
        bool acceptsFirstResponder() const override { return true; }
    };
    Window window(std::make_shared<Quiet>(NSMakeRect(0, 0, 40, 40)));
    window.click({5, 5});
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
    QApplication::sendEvent(window.views, &escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST(ViewWidget, DrawsEachVisibleViewWholeAndOnlyWhereAsked) {
    const Pair views;
    views.right->setHidden(true);
    Window window(views.root);
    EXPECT_EQ(window.views->sizeHint(), QSize(100, 80));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !views.left->drawn.empty(); }));
    EXPECT_EQ(views.root->frame().size.width, window.views->width()); // whatever was hinted
    EXPECT_THAT(views.left->drawn, Each(NSMakeRect(0, 0, 40, 20)));
    EXPECT_THAT(views.right->drawn, SizeIs(0));

    views.left->drawn.clear();
    views.left->setNeedsDisplayInRect(NSMakeRect(1, 1, 2, 2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !views.left->drawn.empty(); }));
    EXPECT_THAT(views.left->drawn, ElementsAre(NSMakeRect(0, 0, 40, 20)));

    views.left->drawn.clear();
    views.right->setHidden(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !views.right->drawn.empty(); }));
    EXPECT_THAT(views.left->drawn, ElementsAre());
}

TEST(ViewWidget, WritesWhatViewsThrowToTheConsole) {
    struct Thrower : Probe {
        using Probe::Probe;
        void mouseDown(const NSEvent&) override { throw std::runtime_error("ouch"); }
        void mouseUp(const NSEvent&) override { throw 1; }
    };
    HeadlessConsole console;
    const ServiceScope scope(console);
    Window window(std::make_shared<Thrower>(NSMakeRect(0, 0, 40, 40)));
    window.click({5, 5});
    EXPECT_THAT(console.lines(),
        ElementsAre("*** uncaught exception: ouch", "*** uncaught exception: of unknown type"));
}

} // namespace
