// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Tracking areas and pointers, as the mouse meets them.
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSCursor.h>
#include <KWToolkit/platform/ui/NSTrackingArea.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Window.h"

namespace {

using namespace kw;
using testing::ElementsAre;

/// Notes the mouse in its bounds, whatever size they get.
struct Tracker : Probe {
    using Probe::Probe;
    void track() {
        m_area = std::make_shared<NSTrackingArea>(bounds(),
            NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveInKeyWindow,
            *this);
        addTrackingArea(m_area);
    }
    void updateTrackingAreas() override {
        removeTrackingArea(m_area);
        track();
    }
    void mouseEntered(const NSEvent&) override {
        log.emplace_back("in");
        NSCursor::IBeamCursor().set();
    }
    void mouseMoved(const NSEvent&) override { log.emplace_back("moved"); }
    void mouseExited(const NSEvent&) override { log.emplace_back("out"); }

private:
    std::shared_ptr<NSTrackingArea> m_area;
};

class Hover : public testing::Test {
protected:
    Hover() {
        root->addSubview(tracker);
        tracker->track();
        window.emplace(root);
        moveTo({90, 70});
        tracker->takeLog();
    }
    ~Hover() override { moveTo({-5, -5}); }
    void moveTo(QPoint place) {
        QTest::mouseMove(window->views, place);
        QCoreApplication::processEvents();
    }

    std::shared_ptr<NSView> root = std::make_shared<NSView>(NSMakeRect(0, 0, 100, 80));
    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>(NSMakeRect(0, 40, 40, 40));
    std::optional<Window> window;
};

TEST_F(Hover, FollowsTheMouseAndGivesItItsShape) {
    moveTo({10, 10});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("in"));
    EXPECT_EQ(window->views->cursor().shape(), Qt::IBeamCursor);
    moveTo({11, 10});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("moved"));
    moveTo({60, 10});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("out"));
    moveTo({10, 10});
    tracker->takeLog();
    moveTo({10, window->views->height() + 5});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("out"));
    EXPECT_EQ(window->views->cursor().shape(), Qt::ArrowCursor);
    NSCursor::pointingHandCursor().set(); // over none of the views
    EXPECT_EQ(window->views->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(Hover, FollowsViewsThatMoveUnderAStillMouse) {
    moveTo({10, 10});
    tracker->takeLog();
    const auto logBecomes = [&](const std::vector<std::string>& log) {
        return QTest::qWaitFor([&] { return tracker->log == log; }) && !tracker->takeLog().empty();
    };
    tracker->setFrame(NSMakeRect(50, 0, 40, 40));
    EXPECT_TRUE(logBecomes({"out"}));
    tracker->setFrame(NSMakeRect(0, 40, 40, 40));
    EXPECT_TRUE(logBecomes({"in"}));
    tracker->setHidden(true);
    EXPECT_TRUE(logBecomes({"out"}));
    tracker->setHidden(false);
    EXPECT_TRUE(logBecomes({"in"}));
    tracker->setFrame(NSMakeRect(0, 30, 50, 50)); // the same place in another area
    QCoreApplication::processEvents();
    EXPECT_THAT(tracker->takeLog(), ElementsAre());
    {
        QWidget another;
        another.setGeometry(400, 400, 50, 50);
        another.show();
        another.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
        EXPECT_TRUE(logBecomes({"out"}));
    }
    window->window.activateWindow();
    EXPECT_TRUE(logBecomes({"in"}));
}

TEST_F(Hover, WaitsForTheEndOfAPress) {
    QTest::mousePress(window->views, Qt::LeftButton, {}, {90, 70});
    moveTo({10, 10});
    EXPECT_THAT(tracker->takeLog(), ElementsAre());
    QTest::mouseRelease(window->views, Qt::LeftButton, {}, {10, 10});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("in"));
}

TEST_F(Hover, GoesThroughWidgetsOverTheViews) {
    tracker->addSubview(std::make_shared<NSButton>(NSMakeRect(0, 0, 20, 20)));
    window->views->grab();
    moveTo({10, static_cast<int>(window->views->height()) - 45});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("in"));
    moveTo({11, static_cast<int>(window->views->height()) - 45});
    EXPECT_THAT(tracker->takeLog(), ElementsAre("moved"));
}

} // namespace
