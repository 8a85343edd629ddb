// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/headless/HeadlessClock.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>

#include <gtest/gtest.h>

#include <future>
#include <set>
#include <thread>

namespace {

using namespace kw;

struct Counter : NSObject {
    void setValue(int newValue) { setAndNotify(*this, SEL("value"), value, newValue); }
    int value = 0;
};

/// A task that adds a letter to a text.
OBObservationTask writing(std::string& text, char letter) {
    return [&text, letter](NSObject&, const NSKeyValueChange&) { text += letter; };
}

TEST(BlockObservation, EachTokenIsACallOfItsOwn) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    Counter counter, other;
    std::string told;
    const std::string a = addObserverForKeyPath(counter, "value", writing(told, 'a'));
    const std::string b = addObserverForKeyPath(counter, "value", writing(told, 'b'));
    addObserverForKeyPath(counter, "value", OBObservationTask()); // none is called
    EXPECT_EQ(
        (std::set {a, b, addObserverForKeyPath(other, "value", writing(told, 'o'))}.size()), 3);
    counter.setValue(1);
    EXPECT_EQ(told, "ab");
    removeObserverWithBlockToken(counter, a);
    counter.setValue(2);
    EXPECT_EQ(told, "abb");
    EXPECT_TRUE(console.lines().empty());

    removeObserverWithBlockToken(counter, a);
    removeObserverWithBlockToken(other, b);
    NSObject unobserved;
    removeObserverWithBlockToken(unobserved, "%@ %s");
    const auto line = [](const NSObject& object, const std::string& token) {
        return "[NSObject(OBBlockObservation) removeObserverWithBlockToken]: Ignoring attempt to "
               "remove non-existent observer on "
            + object.description() + " for token " + token + ".";
    };
    EXPECT_EQ(console.lines(),
        (std::vector {line(counter, a), line(other, b), line(unobserved, "%@ %s")}));
    counter.setValue(3);
    other.setValue(3);
    EXPECT_EQ(told, "abbbo");
    removeObserverWithBlockToken(other, addObserverForKeyPath(other, "value", {}));
}

TEST(BlockObservation, GetsTheObjectAndTheKindOfChangeAlone) {
    Counter counter;
    int calls = 0;
    addObserverForKeyPath(counter, "value", [&](NSObject& object, const NSKeyValueChange& change) {
        ++calls;
        EXPECT_EQ(&object, &counter);
        EXPECT_EQ(counter.value, 5); // after the change, before the setter returns
        EXPECT_EQ(change.kind, NSKeyValueChangeKind::setting);
        EXPECT_FALSE(change.newValue.has_value() || change.oldValue.has_value() || change.isPrior);
    });
    counter.setValue(5);
    EXPECT_EQ(calls, 1);
}

TEST(BlockObservation, OtherContextsDoNotReachTheTask) {
    Counter counter;
    std::string told;
    const auto trampoline =
        OBObserverTrampoline::initObservingObject(counter, "value", nullptr, writing(told, 'a'));
    trampoline->observeValueForKeyPath("value", counter, {}, "OBObserverTrampolineContext");
    EXPECT_EQ(told, "");
    counter.setValue(1);
    EXPECT_EQ(told, "a");
    trampoline->cancelObservation();
    trampoline->cancelObservation();
    counter.setValue(2);
    EXPECT_EQ(told, "a");
}

TEST(BlockObservation, TasksMayChangeWhoObserves) {
    Counter counter;
    std::string told;
    std::map<char, std::string> tokens;
    const auto held = std::make_shared<int>();
    const auto add = [&](char letter, std::function<void()> then) {
        tokens[letter] = addObserverForKeyPath(counter, "value",
            [&told, letter, then = std::move(then), held](NSObject&, const NSKeyValueChange&) {
                told += letter;
                then();
            });
    };
    const auto remove = [&](char letter) { removeObserverWithBlockToken(counter, tokens[letter]); };
    add('a', [&] { remove('a'); });
    add('b', [&] {
        if (counter.value < 10)
            remove('c');
    });
    add('c', [] { });
    add('d', [&] {
        if (!tokens.contains('e'))
            add('e', [] { });
    });
    add('f', [&] {
        if (counter.value < 10)
            counter.setValue(10);
    });
    counter.setValue(1);
    EXPECT_EQ(told,
        "abdf"
        "bdfe");
    EXPECT_EQ(held.use_count(), 1 + 4); // of b, d, e and f
    for (const char letter : {'b', 'd', 'e', 'f'})
        remove(letter);
    EXPECT_EQ(held.use_count(), 1);
    counter.setValue(2);
    EXPECT_EQ(told.size(), 8);
}

TEST(BlockObservation, WhatATaskThrowsLeavesTheSetter) {
    Counter counter;
    std::string told;
    const auto token = addObserverForKeyPath(counter, "value",
        [](NSObject&, const NSKeyValueChange&) { throw std::runtime_error("no"); });
    addObserverForKeyPath(counter, "value", writing(told, 'a'));
    EXPECT_THROW(counter.setValue(1), std::runtime_error);
    EXPECT_EQ(counter.value, 1);
    EXPECT_EQ(told, "");
    removeObserverWithBlockToken(counter, token);
    counter.setValue(2);
    EXPECT_EQ(told, "a");
}

/// Removes an observation when it dies, as a member of a task may.
struct Remover {
    ~Remover() { removeObserverWithBlockToken(object, token); }
    NSObject& object;
    std::string token;
};

TEST(BlockObservation, WhatATaskHoldsMayObserveToo) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    Counter counter, other;
    std::string told;
    std::shared_ptr<Remover> remover(
        new Remover {other, addObserverForKeyPath(other, "value", writing(told, 'o'))});
    const auto token =
        addObserverForKeyPath(counter, "value", [remover](NSObject&, const NSKeyValueChange&) { });
    remover.reset();
    removeObserverWithBlockToken(counter, token);
    other.setValue(1);
    EXPECT_EQ(told, "");
    EXPECT_TRUE(console.lines().empty());
}

TEST(BlockObservation, TheObjectMayDieWhileItIsToldOf) {
    for (const bool onAnotherThread : {false, true}) {
        auto counter = std::make_shared<Counter>();
        Counter& object = *counter;
        std::string told;
        const auto held = std::make_shared<int>();
        addObserverForKeyPath(object, "value", [&, held](NSObject&, const NSKeyValueChange&) {
            if (onAnotherThread)
                std::thread([&] { counter.reset(); }).join();
            else
                counter.reset();
            EXPECT_GT(held.use_count(), 1); // the task, as it runs
            told += 'a';
        });
        addObserverForKeyPath(object, "value", writing(told, 'b'));
        object.setValue(1);
        EXPECT_EQ(told, "a");
        EXPECT_EQ(held.use_count(), 1);
    }
}

TEST(BlockObservation, ChangesNestToAnyDepth) {
    constexpr std::size_t depth = 20;
    std::vector<std::shared_ptr<Counter>> counters;
    std::vector<std::string> tokens;
    const auto held = std::make_shared<int>();
    for (std::size_t i = 0; i < depth; ++i) {
        auto counter = std::make_shared<Counter>();
        tokens.push_back(addObserverForKeyPath(
            *counter, "value", [&, i, held](NSObject&, const NSKeyValueChange&) {
                if (i + 1 < depth) {
                    counters[i + 1]->setValue(1);
                    return;
                }
                for (std::size_t removed = 0; removed < depth; removed += 2)
                    removeObserverWithBlockToken(*counters[removed], tokens[removed]);
                counters.clear();
                EXPECT_EQ(held.use_count(), 1 + static_cast<long>(depth)); // all are running
            }));
        counters.push_back(std::move(counter));
    }
    counters.front()->setValue(1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(BlockObservation, EndsWhileTheObjectOrTheTrampolineDies) {
    struct Leaver : Counter {
        ~Leaver() override {
            removeObserverWithBlockToken(*this, token);
            setValue(2);
        }
        std::string token;
    };
    std::string told;
    auto leaver = std::make_shared<Leaver>();
    leaver->token = addObserverForKeyPath(*leaver, "value", writing(told, 'a'));
    leaver->setValue(1);
    leaver.reset();
    EXPECT_EQ(told, "a");

    Counter counter;
    std::shared_ptr<OBObserverTrampoline> trampoline;
    const auto held = std::make_shared<int>();
    trampoline = OBObserverTrampoline::initObservingObject(
        counter, "value", nullptr, [&, held](NSObject&, const NSKeyValueChange&) {
            trampoline.reset();
            EXPECT_EQ(held.use_count(), 2);
        });
    counter.setValue(1);
    counter.setValue(2);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(BlockObservation, AnotherThreadMayRemoveWhatIsBeingCalled) {
    Counter counter;
    std::string token;
    const auto held = std::make_shared<int>();
    int calls = 0;
    token = addObserverForKeyPath(counter, "value", [&, held](NSObject&, const NSKeyValueChange&) {
        std::thread([&] { removeObserverWithBlockToken(counter, token); }).join();
        EXPECT_GT(held.use_count(), 1);
        ++calls;
    });
    counter.setValue(1);
    EXPECT_EQ(held.use_count(), 1);
    counter.setValue(2);
    EXPECT_EQ(calls, 1);
}

TEST(BlockObservation, OnAQueueWhatHasNotBegunIsNotCalledAfterRemoval) {
    const auto queue = std::make_shared<NSOperationQueue>();
    queue->setMaxConcurrentOperationCount(0);
    std::string told;
    auto kept = std::make_shared<Counter>(), removed = std::make_shared<Counter>();
    addObserverForKeyPath(*kept, "value", queue, [&](NSObject& object, const NSKeyValueChange&) {
        told += std::to_string(static_cast<Counter&>(object).value);
    });
    const auto token = addObserverForKeyPath(*removed, "value", queue, writing(told, 'r'));
    {
        Counter onStack;
        addObserverForKeyPath(onStack, "value", queue, writing(told, 's'));
        onStack.setValue(1);
    }
    kept->setValue(1);
    removed->setValue(1);
    removeObserverWithBlockToken(*removed, token);
    kept->setValue(2);
    EXPECT_EQ(queue->operationCount(), 4);
    const std::weak_ptr<Counter> watched = kept;
    kept.reset();
    EXPECT_FALSE(watched.expired()); // the operations keep it
    queue->setMaxConcurrentOperationCount(1);
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(told, "22");
    EXPECT_TRUE(watched.expired());
}

TEST(BlockObservation, AnObjectMayDieAndObserveNoMoreWhileAnotherIsAdded) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    struct Owner : Counter {
        // Its only owner is whoever asks.
        std::shared_ptr<Counter> related() const {
            struct Brief : Counter {
                Remover remover;
                explicit Brief(Counter& other)
                    : remover {other, addObserverForKeyPath(other, "value", {})} { }
            };
            return std::make_shared<Brief>(*other);
        }
        Class& isa() const override {
            static auto& object = *new Class(
                "Owner", NSObject::classObject(), {}, {property("related", &Owner::related)});
            return object;
        }
        Counter* other = nullptr;
    } owner;
    Counter other;
    owner.other = &other;
    std::string told;
    const auto token = addObserverForKeyPath(owner, "related.value", writing(told, 'a'));
    removeObserverWithBlockToken(owner, token);
    EXPECT_TRUE(console.lines().empty());
}

TEST(OperationQueue, RunsInOrderOrAtOnceAndOutlivesItsOwner) {
    std::promise<void> isRun;
    std::string told;
    {
        const auto serial = std::make_shared<NSOperationQueue>();
        serial->setMaxConcurrentOperationCount(1);
        for (char letter = 'a'; letter <= 'e'; ++letter)
            serial->addOperation([&told, letter] { told += letter; });
        serial->addOperation([&isRun] { isRun.set_value(); });
    }
    isRun.get_future().wait();
    EXPECT_EQ(told, "abcde");

    HeadlessConsole console;
    const ServiceScope scope(console);
    auto concurrent = std::make_shared<NSOperationQueue>();
    std::promise<void> one, other;
    concurrent->addOperation([] { }); // leaves a thread that waits for more
    concurrent->waitUntilAllOperationsAreFinished();
    concurrent->addOperation([&] {
        one.set_value();
        other.get_future().wait();
    });
    concurrent->addOperation([&] {
        other.set_value();
        one.get_future().wait();
    });
    concurrent->addOperation([] { throw std::runtime_error("oh"); });
    concurrent->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(console.lines(), std::vector<std::string> {"*** uncaught exception: oh"});

    // An operation may hold the last pointer to its queue.
    std::promise<void> isOver;
    concurrent->addOperation([&isOver, queue = concurrent]() mutable {
        queue.reset();
        isOver.set_value();
    });
    concurrent.reset();
    isOver.get_future().wait();
}

TEST(OperationQueue, TheMainOneRunsOnTheMainThread) {
    HeadlessClock clock;
    HeadlessRunLoop loop(clock);
    const ServiceScope scope(loop);
    Counter counter;
    std::thread::id calledOn;
    addObserverForKeyPath(counter, "value", NSOperationQueue::mainQueue(),
        [&](NSObject&, const NSKeyValueChange&) { calledOn = std::this_thread::get_id(); });
    std::thread([&] { counter.setValue(1); }).join();
    EXPECT_EQ(calledOn, std::thread::id());
    while (loop.runOnce(0)) { }
    EXPECT_EQ(calledOn, std::this_thread::get_id());
    EXPECT_EQ(NSOperationQueue::mainQueue()->operationCount(), 0);
}

} // namespace
