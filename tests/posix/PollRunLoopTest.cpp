// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PollRunLoop.h>

#include <tests/support/WatchContract.h>

#include <csignal>

namespace kw::test {

namespace {

const auto poll =
    testing::Values(RunLoopMaker {"Poll", [] { return std::make_shared<PollRunLoop>(); }});
INSTANTIATE_TEST_SUITE_P(Posix, RunLoopContract, poll, nameOfLoop);
INSTANTIATE_TEST_SUITE_P(Posix, WaitingRunLoopContract, poll, nameOfLoop);
INSTANTIATE_TEST_SUITE_P(Posix, WatchContract, poll, nameOfLoop);

TEST(PollRunLoop, IsWokenBySignalsAndOtherThreadsButNotKeptAwake) {
    PollRunLoop loop;
    struct sigaction action {};
    action.sa_handler = [](int) { };
    ASSERT_EQ(::sigaction(SIGUSR1, &action, nullptr), 0);
    std::thread thread([&, waiting = ::pthread_self()] {
        for (int i = 0; i < 1000; ++i) // so that some come while it waits
            ::pthread_kill(waiting, SIGUSR1);
        loop.perform([&] { loop.stop(); });
    });
    loop.run();
    thread.join();

    bool isDue = false;
    loop.callAfter(0.05, [&] { isDue = true; });
    for (int passes = 0; !isDue && passes < 10; ++passes)
        loop.runOnce(10);
    EXPECT_TRUE(isDue);
}

} // namespace

} // namespace kw::test
