// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>
#include <tests/support/RunLoopContract.h>

namespace kw::test {

namespace {

struct LoopWithClock {
    HeadlessClock clock;
    HeadlessRunLoop loop {clock};
};

const RunLoopMaker headless {"Headless", [] {
                                 const auto both = std::make_shared<LoopWithClock>();
                                 return std::shared_ptr<RunLoop>(both, &both->loop);
                             }};
const RunLoopMaker standard {"Standard", [] { return std::make_shared<StandardRunLoop>(); }};
INSTANTIATE_TEST_SUITE_P(Unit, RunLoopContract, testing::Values(headless, standard), nameOfLoop);
INSTANTIATE_TEST_SUITE_P(Unit, WaitingRunLoopContract, testing::Values(standard), nameOfLoop);

struct HeadlessRunLoopTest : testing::Test, LoopWithClock {
    std::vector<int> order;
    auto note(int number) {
        return [this, number] { order.push_back(number); };
    }
};

TEST_F(HeadlessRunLoopTest, AdvancingTheClockFiresWhatFallsDue) {
    loop.callAfter(HUGE_VAL, note(4));
    loop.callAfter(2, note(3));
    loop.callAfter(1, note(1));
    loop.callAfter(1, note(2));
    loop.advance(0.5);
    EXPECT_TRUE(order.empty());
    loop.advance(2);
    EXPECT_EQ(order, (std::vector {1, 2, 3}));
    EXPECT_DOUBLE_EQ(clock.now(), 2.5);
    loop.advance(1e9);
    EXPECT_EQ(order.size(), 3u);
}

TEST_F(HeadlessRunLoopTest, WhatACallbackSchedulesWaitsForTheNextPass) {
    loop.callAfter(0, [this] { loop.callAfter(0, note(2)); });
    loop.perform([this] { loop.perform(note(1)); });
    loop.runOnce(0);
    EXPECT_TRUE(order.empty());
    loop.runOnce(0);
    EXPECT_EQ(order, (std::vector {1, 2}));
}

TEST(Platform, EveryThreadHasALoopOfItsOwn) {
    RunLoop* other = nullptr;
    std::thread([&other] { other = &Platform::runLoop(); }).join();
    EXPECT_NE(&Platform::runLoop(), other);
    EXPECT_EQ(&Platform::runLoop(), &Platform::runLoop());
}

TEST(Platform, ServicesAreReplacedForAScope) {
    Clock& former = Platform::clock();
    HeadlessClock outer, inner;
    {
        const ServiceScope outerScope(outer);
        { const ServiceScope innerScope(inner); }
        EXPECT_EQ(&Platform::clock(), &outer);
    }
    EXPECT_EQ(&Platform::clock(), &former);
}

} // namespace

} // namespace kw::test
