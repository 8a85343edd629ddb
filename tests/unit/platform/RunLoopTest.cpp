// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace kw;

struct RunLoopTest : testing::Test {
    HeadlessClock clock;
    HeadlessRunLoop loop {clock};
    std::vector<int> order;
    auto note(int number) {
        return [this, number] { order.push_back(number); };
    }
};

TEST_F(RunLoopTest, TimersFireInOrderOfTimeThenAge) {
    loop.callAfter(2, note(3));
    loop.callAfter(1, note(1));
    loop.callAfter(1, note(2));
    loop.advance(0.5);
    EXPECT_TRUE(order.empty());
    loop.advance(2);
    EXPECT_EQ(order, (std::vector {1, 2, 3}));
    EXPECT_DOUBLE_EQ(clock.now(), 2.5);
}

TEST_F(RunLoopTest, OddDelaysMeanTheNextPass) {
    for (const double delay : {0.0, -1.0, std::nan(""), -HUGE_VAL})
        loop.callAfter(delay, note(1));
    EXPECT_TRUE(order.empty());
    loop.runOnce(0);
    EXPECT_EQ(order.size(), 4u);
    loop.callAfter(HUGE_VAL, note(2));
    loop.advance(1e9);
    EXPECT_EQ(order.size(), 4u);
}

TEST_F(RunLoopTest, WhatACallbackSchedulesWaitsForTheNextPass) {
    loop.callAfter(0, [this] { loop.callAfter(0, note(2)); });
    loop.perform([this] { loop.perform(note(1)); });
    loop.runOnce(0);
    EXPECT_TRUE(order.empty());
    loop.runOnce(0);
    EXPECT_EQ(order, (std::vector {1, 2}));
}

TEST_F(RunLoopTest, ACancelledTimerDoesNotFire) {
    const auto timer = loop.callAfter(1, note(1));
    RunLoop::Timer later {};
    loop.callAfter(1, [&] { loop.cancel(later); });
    later = loop.callAfter(1, note(2));
    loop.cancel(timer);
    loop.cancel(timer);
    loop.cancel(RunLoop::Timer::none);
    loop.advance(2);
    EXPECT_TRUE(order.empty());
}

TEST_F(RunLoopTest, StopEndsTheInnermostRun) {
    loop.perform([this] {
        loop.perform([this] {
            order.push_back(1);
            loop.stop();
        });
        loop.run();
        order.push_back(2);
        loop.stop();
    });
    loop.run();
    EXPECT_EQ(order, (std::vector {1, 2}));

    loop.stop(); // ahead of its time
    loop.perform(note(3));
    loop.run();
    EXPECT_EQ(order, (std::vector {1, 2}));
}

TEST_F(RunLoopTest, AnExceptionLeavesTheLoopIntact) {
    loop.perform([] { throw std::runtime_error("boom"); });
    loop.perform(note(1));
    loop.callAfter(0, [] { throw std::runtime_error("boom"); });
    loop.callAfter(0, note(2));
    EXPECT_THROW(loop.runOnce(0), std::runtime_error);
    EXPECT_THROW(loop.runOnce(0), std::runtime_error);
    loop.runOnce(0);
    EXPECT_EQ(order, (std::vector {1, 2}));
}

TEST(StandardRunLoop, PerformsAndStopsFromOtherThreads) {
    StandardRunLoop loop;
    std::vector<int> order;
    std::thread other([&] {
        for (int i = 0; i < 100; ++i)
            loop.perform([&order, i] { order.push_back(i); });
        loop.perform([&loop] { loop.stop(); });
    });
    loop.run();
    other.join();
    ASSERT_EQ(order.size(), 100u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_FALSE(loop.runOnce(0));
    EXPECT_EQ(loop.watchDescriptor(0, [] { }), RunLoop::Watch::none);
}

TEST(Platform, EveryThreadHasALoopOfItsOwn) {
    RunLoop* other = nullptr;
    std::thread([&other] { other = &Platform::runLoop(); }).join();
    EXPECT_NE(&Platform::runLoop(), other);
    EXPECT_EQ(&Platform::runLoop(), &Platform::runLoop());
}

TEST(Platform, ServicesAreReplacedForAScope) {
    Clock& former = Platform::clock();
    {
        HeadlessClock outer;
        const ServiceScope outerScope(outer);
        {
            HeadlessClock inner;
            const ServiceScope innerScope(inner);
            EXPECT_EQ(&Platform::clock(), &inner);
        }
        EXPECT_EQ(&Platform::clock(), &outer);
    }
    EXPECT_EQ(&Platform::clock(), &former);
}

} // namespace
