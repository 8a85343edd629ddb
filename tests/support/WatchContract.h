// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What every run loop promises that can watch descriptors.
#pragma once

#include <backends/linux/posix/FileDescriptor.h>
#include <tests/support/RunLoopContract.h>

#include <sys/socket.h>

#include <utility>

namespace kw::test {

/// Two ends of a connection: what `write` writes on one, `read` takes from the other.
struct Channel {
    Channel() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
        reader = FileDescriptor(ends[0]);
        writer = FileDescriptor(ends[1]);
    }
    void write() { EXPECT_EQ(::write(writer.get(), "x", 1), 1); }
    /// Whether there was something to read.
    bool read() {
        char byte;
        return ::read(reader.get(), &byte, 1) == 1;
    }

    FileDescriptor reader, writer;
};

class WatchContract : public RunLoopContract {
protected:
    ~WatchContract() override {
        for (const auto watch : watches)
            loop->unwatch(watch);
    }
    RunLoop::Watch watch(const Channel& channel, Task readable) {
        watches.push_back(loop->watchDescriptor(channel.reader.get(), std::move(readable)));
        return watches.back();
    }
    void runUntilCalls(int count) {
        while (calls < count)
            ASSERT_TRUE(loop->runOnce(10));
        EXPECT_EQ(calls, count);
    }
    void expectNothingToDo() {
        const int before = calls;
        while (loop->runOnce(0) && calls == before) { }
        EXPECT_EQ(calls, before);
    }

    Channel one, other;
    int calls = 0;
    std::vector<RunLoop::Watch> watches;
};

TEST_P(WatchContract, CallsWhileThereIsSomethingToRead) {
    const auto watched = watch(one, [this] { ++calls; });
    EXPECT_NE(watched, RunLoop::Watch::none);
    expectNothingToDo();
    one.write();
    EXPECT_EQ(calls, 0);
    runUntilCalls(1);
    runUntilCalls(2); // it was not read
    one.read();
    expectNothingToDo();
    one.writer = FileDescriptor(); // hangs up
    runUntilCalls(3);
    loop->unwatch(watched);
    loop->unwatch(watched);
    expectNothingToDo();
}

TEST_P(WatchContract, WatchesChangeWithinCalls) {
    RunLoop::Watch first {}, second {};
    // Whichever is called first ends both.
    const auto endBoth = [&, longEnoughToLiveOnTheHeap = std::string(100, 'x')] {
        loop->unwatch(first);
        loop->unwatch(second);
        watch(one, [&] { calls += 10; });
        calls += static_cast<int>(longEnoughToLiveOnTheHeap.find_last_of('x')) - 98;
    };
    first = watch(one, endBoth);
    second = watch(other, endBoth);
    one.write();
    other.write();
    runUntilCalls(1);
    runUntilCalls(11);
}

TEST_P(WatchContract, ANestedLoopLeavesNothingToReadTwice) {
    bool isNested = false;
    for (Channel* channel : {&one, &other}) {
        watch(*channel, [&, channel] {
            ++calls;
            EXPECT_TRUE(channel->read());
            if (!std::exchange(isNested, true)) {
                loop->callAfter(0, stop());
                loop->run();
            }
        });
        channel->write();
    }
    runUntilCalls(2);
    expectNothingToDo(); // the stop was the inner loop's
}

TEST_P(WatchContract, ACallThatThrowsLeavesTheOthersToBeMade) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    watch(one, [this] {
        one.read();
        throw std::runtime_error("as a host may");
    });
    watch(other, [this] { calls += other.read(); });
    one.write();
    other.write();
    int thrown = 0;
    while (calls == 0) {
        try {
            loop->runOnce(10);
        } catch (const std::runtime_error&) {
            ++thrown;
        }
    }
    EXPECT_EQ(thrown, GetParam().letsExceptionsThrough ? 1 : 0);
    EXPECT_THAT(console.lines(), testing::SizeIs(1 - thrown));
}

} // namespace kw::test
