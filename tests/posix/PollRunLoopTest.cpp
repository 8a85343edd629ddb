// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PollRunLoop.h>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <thread>

namespace {

using namespace kw;

/// Two ends of a connection: what `write` writes on one, `read` takes from the other.
class Channel {
public:
    Channel() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
        m_reader = FileDescriptor(ends[0]);
        m_writer = FileDescriptor(ends[1]);
    }
    int descriptor() const { return m_reader.get(); }
    void write() { EXPECT_EQ(::write(m_writer.get(), "x", 1), 1); }
    /// Whether there was something to read.
    bool read() {
        char byte;
        return ::read(m_reader.get(), &byte, 1) == 1;
    }
    void hangUp() { m_writer = FileDescriptor(); }

private:
    FileDescriptor m_reader;
    FileDescriptor m_writer;
};

class PollRunLoopTest : public testing::Test {
protected:
    PollRunLoop loop;
    Channel one;
    Channel other;
    int calls = 0;
};

TEST_F(PollRunLoopTest, CallsWhileThereIsSomethingToRead) {
    const auto watch = loop.watchDescriptor(one.descriptor(), [&] { ++calls; });
    EXPECT_NE(watch, RunLoop::Watch::none);
    EXPECT_FALSE(loop.runOnce(0));
    one.write();
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(loop.runOnce(10));
    EXPECT_TRUE(loop.runOnce(10)); // it was not read
    EXPECT_EQ(calls, 2);
    one.read();
    EXPECT_FALSE(loop.runOnce(0));

    one.hangUp();
    EXPECT_TRUE(loop.runOnce(10));
    EXPECT_EQ(calls, 3);
    loop.unwatch(watch);
    loop.unwatch(watch);
    EXPECT_FALSE(loop.runOnce(0));
}

TEST_F(PollRunLoopTest, WatchesChangeWithinCalls) {
    RunLoop::Watch first {};
    RunLoop::Watch second {};
    // Whichever is called first ends both.
    const auto endBoth = [&] {
        ++calls;
        loop.unwatch(first);
        loop.unwatch(second);
        loop.watchDescriptor(one.descriptor(), [&] { calls += 10; });
    };
    first = loop.watchDescriptor(one.descriptor(), endBoth);
    second = loop.watchDescriptor(other.descriptor(), endBoth);
    one.write();
    other.write();
    EXPECT_TRUE(loop.runOnce(10));
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(loop.runOnce(10));
    EXPECT_EQ(calls, 11);
}

TEST_F(PollRunLoopTest, ANestedLoopLeavesNothingToReadTwice) {
    bool isNested = false;
    for (Channel* channel : {&one, &other}) {
        loop.watchDescriptor(channel->descriptor(), [&, channel] {
            ++calls;
            EXPECT_TRUE(channel->read());
            if (!std::exchange(isNested, true)) {
                loop.callAfter(0, [&] { loop.stop(); });
                loop.run();
            }
        });
        channel->write();
    }
    EXPECT_TRUE(loop.runOnce(10));
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(loop.runOnce(0)); // the stop was the inner loop's
}

TEST_F(PollRunLoopTest, AnExceptionLeavesTheLoopIntact) {
    loop.watchDescriptor(one.descriptor(), [&] {
        one.read();
        throw std::runtime_error("as a host may");
    });
    loop.watchDescriptor(other.descriptor(), [&] { calls += other.read(); });
    one.write();
    other.write();
    EXPECT_THROW(loop.run(), std::runtime_error);
    EXPECT_TRUE(loop.runOnce(0));
    EXPECT_EQ(calls, 1);
}

TEST_F(PollRunLoopTest, OtherThreadsAndSignalsReachAWaitingLoop) {
    struct sigaction action {};
    action.sa_handler = [](int) { };
    ASSERT_EQ(::sigaction(SIGUSR1, &action, nullptr), 0);
    const pthread_t waiting = ::pthread_self();
    std::thread thread([&] {
        ::pthread_kill(waiting, SIGUSR1);
        loop.perform([&] { ++calls; });
        loop.perform([&] {
            ++calls;
            loop.stop();
        });
    });
    loop.run();
    thread.join();
    EXPECT_EQ(calls, 2);

    // And does not keep it awake.
    bool isDue = false;
    loop.callAfter(0.05, [&] { isDue = true; });
    for (int passes = 0; !isDue && passes < 10; ++passes)
        loop.runOnce(10);
    EXPECT_TRUE(isDue);
}

} // namespace
