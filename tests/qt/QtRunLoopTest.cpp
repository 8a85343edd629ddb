// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkitQt/QtServices.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>

#include <cmath>
#include <stdexcept>
#include <string>
#include <thread>

#include <unistd.h>

namespace {

using namespace kw;
using testing::ElementsAre;

class QtRunLoop : public testing::Test {
protected:
    QtRunLoop() { qt::useQtServices(); }

    std::function<void()> note(const char* what) {
        return [this, what] { log.emplace_back(what); };
    }
    std::function<void()> stop() {
        return [this] { loop.stop(); };
    }

    RunLoop& loop = Platform::runLoop();
    std::vector<std::string> log;
};

TEST_F(QtRunLoop, FiresInOrderOfTimeThenOfMaking) {
    loop.callAfter(0.03, stop());
    loop.callAfter(0.02, note("late"));
    loop.callAfter(0.01, note("early"));
    loop.callAfter(0, note("first"));
    loop.callAfter(-1, note("second"));
    loop.callAfter(std::nan(""), note("third"));
    loop.cancel(loop.callAfter(0, note("cancelled")));
    loop.cancel(RunLoop::Timer::none);
    EXPECT_THAT(log, ElementsAre());
    loop.run();
    EXPECT_THAT(log, ElementsAre("first", "second", "third", "early", "late"));
}

TEST_F(QtRunLoop, RunsInsideTheHostsLoop) {
    loop.callAfter(0, note("timer"));
    loop.callAfter(0.01, [] { QApplication::exit(); });
    QApplication::exec();
    EXPECT_THAT(log, ElementsAre("timer"));
}

TEST_F(QtRunLoop, PerformsInOrderFromAnyThread) {
    std::thread([this, main = std::this_thread::get_id()] {
        loop.perform(note("one"));
        loop.perform(note("two"));
        loop.perform([main] { EXPECT_EQ(std::this_thread::get_id(), main); });
        loop.perform(stop());
    }).join();
    EXPECT_THAT(log, ElementsAre());
    loop.run();
    EXPECT_THAT(log, ElementsAre("one", "two"));
}

TEST_F(QtRunLoop, NestsAndStopsTheInnermost) {
    loop.callAfter(0, [this] {
        loop.callAfter(0.01, note("inner timer"));
        loop.callAfter(0.02, stop());
        loop.run();
        log.emplace_back("inner loop ended");
        loop.stop();
    });
    loop.run();
    EXPECT_THAT(log, ElementsAre("inner timer", "inner loop ended"));
}

TEST_F(QtRunLoop, StopsTheNextRunWhereNoneHasBegun) {
    loop.stop();
    loop.callAfter(0, note("timer"));
    loop.run();
    EXPECT_THAT(log, ElementsAre());
    loop.callAfter(0, stop());
    loop.run();
    EXPECT_THAT(log, ElementsAre("timer"));
}

TEST_F(QtRunLoop, StopsFromAnotherThread) {
    std::thread other;
    loop.callAfter(0, [&] { other = std::thread([this] { loop.stop(); }); });
    loop.run();
    other.join();
}

TEST_F(QtRunLoop, WatchesDescriptorsUntilUnwatched) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    RunLoop::Watch watch {};
    watch = loop.watchDescriptor(ends[0], [&] {
        log.emplace_back("readable");
        // Not read: without the end of the watch it would be called again and again.
        loop.unwatch(watch);
    });
    EXPECT_FALSE(loop.runOnce(0) && !log.empty());
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    while (log.empty() && loop.runOnce(5)) { }
    while (loop.runOnce(0)) { }
    EXPECT_THAT(log, ElementsAre("readable"));

    close(ends[1]);
    watch = loop.watchDescriptor(ends[0], stop());
    loop.run(); // The peer closed.
    loop.unwatch(watch);
    close(ends[0]);
}

TEST_F(QtRunLoop, WritesWhatCallbacksThrowToTheConsole) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    loop.callAfter(0, [] { throw std::runtime_error("in a timer"); });
    loop.perform([] { throw 1; });
    loop.callAfter(0.01, stop());
    loop.run();
    EXPECT_THAT(console.lines(),
        testing::UnorderedElementsAre(
            "*** uncaught exception: in a timer", "*** uncaught exception: of unknown type"));
}

TEST_F(QtRunLoop, SinglePassTellsWhetherAnythingWasDone) {
    while (loop.runOnce(0)) { }
    EXPECT_FALSE(loop.runOnce(0.001));
    loop.callAfter(0, note("timer"));
    EXPECT_TRUE(loop.runOnce(5));
    EXPECT_THAT(log, ElementsAre("timer"));
}

TEST_F(QtRunLoop, ServesThreadsThatQtDidNotStart) {
    std::thread([this] {
        RunLoop& own = Platform::runLoop();
        EXPECT_NE(&own, &loop);
        own.callAfter(0.001, [&] {
            log.emplace_back("timer");
            own.stop();
        });
        own.run();
    }).join();
    EXPECT_THAT(log, ElementsAre("timer"));
}

} // namespace
