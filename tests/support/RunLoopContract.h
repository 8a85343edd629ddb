// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What every run loop promises. Each loop's own test file says which suites it is to pass.
#pragma once

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace kw::test {

struct RunLoopMaker {
    const char* name;
    std::function<std::shared_ptr<RunLoop>()> make;
    bool letsExceptionsThrough = true;
    friend void PrintTo(const RunLoopMaker& maker, std::ostream* out) { *out << maker.name; }
};

inline std::string nameOfLoop(const testing::TestParamInfo<RunLoopMaker>& info) {
    return info.param.name;
}

class RunLoopContract : public testing::TestWithParam<RunLoopMaker> {
protected:
    using Task = std::function<void()>;

    Task note(const char* what) {
        return [this, what] { log.emplace_back(what); };
    }
    Task stop() {
        return [this] { loop->stop(); };
    }

    const std::shared_ptr<RunLoop> loop = GetParam().make();
    /// How a task comes to be called as soon as can be.
    const std::function<void(Task)> ways[2] {
        [this](Task task) { loop->callAfter(0, std::move(task)); },
        [this](Task task) { loop->perform(std::move(task)); },
    };
    std::vector<std::string> log;
};

TEST_P(RunLoopContract, FiresInOrderOfTimeThenOfMaking) {
    loop->callAfter(0.03, stop());
    loop->callAfter(0.02, note("late"));
    loop->callAfter(0.01, note("early"));
    for (const double soon : {0.0, -1.0, std::nan(""), -HUGE_VAL})
        loop->callAfter(soon, [this, soon] { log.push_back(std::to_string(soon)); });
    EXPECT_THAT(log, testing::IsEmpty());
    loop->run();
    EXPECT_THAT(log, testing::ElementsAre("0.000000", "-1.000000", "nan", "-inf", "early", "late"));
}

TEST_P(RunLoopContract, ACancelledTimerDoesNotFire) {
    RunLoop::Timer later {};
    const auto timer = loop->callAfter(0, note("cancelled"));
    loop->callAfter(0, [&] { loop->cancel(later); });
    later = loop->callAfter(0, note("cancelled when due"));
    loop->cancel(timer);
    loop->cancel(timer);
    loop->cancel(RunLoop::Timer::none);
    loop->callAfter(0.001, stop());
    loop->run();
    EXPECT_THAT(log, testing::IsEmpty());
}

TEST_P(RunLoopContract, LoopsNestAndStopTheInnermost) {
    for (const auto& schedule : ways) {
        schedule([&] {
            schedule(note("inner"));
            schedule(stop());
            loop->run();
            log.emplace_back("outer");
            loop->stop();
        });
        loop->run();
        // What was scheduled before the inner loop began happens in it, too.
        schedule([this] {
            loop->run();
            log.emplace_back("inner ended");
            loop->stop();
        });
        schedule([this] {
            log.emplace_back("within");
            loop->stop();
        });
        loop->run();
    }
    EXPECT_THAT(log,
        testing::ElementsAre(
            "inner", "outer", "within", "inner ended", "inner", "outer", "within", "inner ended"));
}

TEST_P(RunLoopContract, AStopAheadOfItsTimeEndsTheNextRun) {
    loop->stop();
    loop->callAfter(0, note("timer"));
    loop->run();
    EXPECT_THAT(log, testing::IsEmpty());
    loop->callAfter(0.001, stop());
    loop->run();
    EXPECT_THAT(log, testing::ElementsAre("timer"));
}

TEST_P(RunLoopContract, ACallbackThatThrowsLeavesTheLoopIntact) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    int thrown = 0;
    for (const auto& schedule : ways) {
        schedule([] { throw std::runtime_error("as a host may"); });
        schedule(stop());
        try {
            loop->run();
        } catch (const std::runtime_error&) {
            ++thrown;
            loop->run();
        }
    }
    EXPECT_EQ(thrown, GetParam().letsExceptionsThrough ? 2 : 0);
    EXPECT_THAT(console.lines(), testing::SizeIs(2 - thrown));
}

TEST_P(RunLoopContract, ASinglePassTellsWhetherAnythingWasDone) {
    while (loop->runOnce(0)) { }
    EXPECT_FALSE(loop->runOnce(0.001));
    for (const auto& schedule : ways) {
        schedule(note("done"));
        EXPECT_TRUE(loop->runOnce(10));
    }
    EXPECT_THAT(log, testing::ElementsAre("done", "done"));
}

/// For loops that wait in real time.
class WaitingRunLoopContract : public RunLoopContract { };

TEST_P(WaitingRunLoopContract, OtherThreadsReachIt) {
    std::vector<int> order;
    std::thread performing([&, own = std::this_thread::get_id()] {
        for (int i = 0; i < 100; ++i)
            loop->perform([&order, i] { order.push_back(i); });
        loop->perform([own] { EXPECT_EQ(std::this_thread::get_id(), own); });
        loop->perform(stop());
    });
    loop->run();
    performing.join();
    EXPECT_EQ(order.size(), 100u);
    EXPECT_TRUE(std::ranges::is_sorted(order));

    std::thread stopping;
    loop->callAfter(0, [&] { stopping = std::thread(stop()); });
    loop->run();
    stopping.join();
}

} // namespace kw::test
