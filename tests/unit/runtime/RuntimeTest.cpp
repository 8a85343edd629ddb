// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSAssertionHandler.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>
#include <KWToolkit/runtime/NSObject+BlocksAdditions.h>
#include <KWToolkit/runtime/NSObject+OBAssociatedObjects.h>
#include <KWToolkit/runtime/NSObject+Swizzle.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

// --- Associated values

/// Counts its death, and associates another with its owner then, if it has one.
struct Value : NSObject {
    explicit Value(int& count, NSObject* comesBackTo = nullptr)
        : deaths(count)
        , owner(comesBackTo) { }
    ~Value() override {
        ++deaths;
        if (owner)
            associateValue(*owner, std::make_shared<Value>(deaths), this);
    }
    int& deaths;
    NSObject* owner;
};

TEST(AssociatedValues, AreKeptUntilReplacedRemovedOrOrphaned) {
    int deaths = 0;
    const std::string key = "key", other = "key"; // compared by address
    {
        NSObject owner;
        EXPECT_EQ(associatedValueForKey(owner, &key), nullptr);
        associateValue(owner, std::make_shared<Value>(deaths), &key);
        associateValue(owner, std::make_shared<Value>(deaths), &other);
        EXPECT_NE(associatedValueForKey<Value>(owner, &key), nullptr);
        EXPECT_NE(associatedValueForKey(owner, &key), associatedValueForKey(owner, &other));
        EXPECT_EQ(deaths, 0);
        associateValue(owner, std::make_shared<NSObject>(), &key);
        EXPECT_EQ(deaths, 1);
        EXPECT_EQ(associatedValueForKey<Value>(owner, &key), nullptr); // there, but no Value
        associateValue(owner, nullptr, &key);
        EXPECT_EQ(associatedValueForKey(owner, &key), nullptr);
    }
    EXPECT_EQ(deaths, 2);
}

TEST(AssociatedValues, WeakOnesAreNeitherKeptNorForgotten) {
    NSObject owner;
    auto value = std::make_shared<NSObject>();
    NSObject* const address = value.get();
    weaklyAssociateValue(owner, address, &owner);
    EXPECT_EQ(value.use_count(), 1);
    value.reset();
    EXPECT_EQ(associatedValueForKey(owner, &owner).get(), address);
    weaklyAssociateValue(owner, nullptr, &owner);
    EXPECT_EQ(associatedValueForKey(owner, &owner), nullptr);
}

TEST(AssociatedValues, AValueThatDiesMayAssociateAnother) {
    int deaths = 0;
    {
        NSObject owner;
        associateValue(owner, std::make_shared<Value>(deaths, &owner), &deaths);
        associateValue(owner, nullptr, &deaths);
        associateValue(owner, std::make_shared<Value>(deaths, &owner), &deaths);
    } // and so while the owner dies
    EXPECT_EQ(deaths, 4);
}

// --- Exchanged methods

class Animal : public NSObject {
public:
    explicit Animal(Class& cls)
        : m_class(cls) { }
    Class& isa() const override { return m_class; }

private:
    Class& m_class;
};

class Dog : public Animal {
public:
    using Animal::Animal;
    int bark() const { return loudness; }
    int loudness = 7;
};

/// Fresh classes for each test: Base (speak, walk, count:) < Derived (run, guard).
struct SwizzleTest : testing::Test {
    Class base {"Base", NSObject::classObject(),
        {
            method("speak", [](Animal&) { return 1; }),
            method("walk", [](Animal&) { return 2; }),
            method("count:", [](Animal&, int n) { return n; }),
        }};
    Class derived {"Derived", base,
        {
            method("run", [](Animal&) { return 3; }),
            method("guard", &Dog::bark),
        }};

    static int ask(Class& cls, const char* message) {
        Dog dog(cls);
        return send<int>(dog, SEL(message));
    }
};

TEST_F(SwizzleTest, OwnMethodsAreExchangedForSubclassesToo) {
    for (const int speaks : {2, 1}) {
        swapMethod(base, SEL("speak"), SEL("walk"));
        for (Class* cls : {&base, &derived}) {
            EXPECT_EQ(ask(*cls, "speak"), speaks);
            EXPECT_EQ(ask(*cls, "walk"), 3 - speaks);
        }
    }
}

TEST_F(SwizzleTest, AnInheritedFirstMethodLeavesTheSuperclassAlone) {
    swapMethod(derived, SEL("speak"), SEL("run"));
    EXPECT_EQ(ask(derived, "speak"), 3);
    EXPECT_EQ(ask(derived, "run"), 1);
    EXPECT_EQ(ask(base, "speak"), 1);
    EXPECT_EQ(base.instanceMethod(SEL("run")), nullptr);

    swapMethod(derived, SEL("walk"), SEL("speak")); // walk inherited, speak by now its own
    EXPECT_EQ(ask(derived, "walk"), 3);
    EXPECT_EQ(ask(derived, "speak"), 2);
    EXPECT_EQ(ask(base, "walk"), 2);
}

TEST_F(SwizzleTest, AnInheritedSecondMethodIsExchangedWhereItIsDefined) {
    swapMethod(derived, SEL("run"), SEL("walk"));
    EXPECT_EQ(ask(derived, "run"), 2);
    EXPECT_EQ(ask(derived, "walk"), 3);
    EXPECT_EQ(ask(base, "walk"), 3);
}

TEST_F(SwizzleTest, CodeThatMeetsAnObjectOfAnotherClassIsAnError) {
    swapMethod(derived, SEL("guard"), SEL("walk"));
    EXPECT_EQ(ask(derived, "walk"), 7);
    Animal cat(base); // has walk, which is now a dog's
    EXPECT_THROW(send<int>(cat, SEL("walk")), NSException);
}

TEST_F(SwizzleTest, WhatDoesNotFitIsAnErrorAndExchangesNothing) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    try {
        swapMethod(base, SEL("count:"), SEL("speak"));
        FAIL() << "no exception";
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), "NSInternalInconsistencyException");
        EXPECT_EQ(exception.reason(), "Method type encodings must be the same: i@:i vs. i@:");
    }
    EXPECT_EQ(console.lines(),
        std::vector<std::string> {
            "*** Assertion failure in +[Base swapMethod:with:], NSObject+Swizzle:19"});
    EXPECT_THROW(swapMethod(base, SEL("speak"), SEL("fly")), NSException);
    EXPECT_THROW(swapMethod(base, SEL(), SEL("speak")), NSException);
    EXPECT_EQ(ask(base, "speak"), 1);
}

TEST_F(SwizzleTest, AHandlerThatReturnsLetsTheExchangeGoAhead) {
    struct : NSAssertionHandler {
        void handleFailure(const AssertionFailure&) override { }
    } handler;
    const NSAssertionHandler::Scope scope(handler);
    swapMethod(base, SEL("speak"), SEL("count:"));

    // Messages are checked against the code they meet, not against the entry's encoding.
    Animal animal(base);
    EXPECT_EQ(send<int>(animal, SEL("speak"), 5), 5);
    EXPECT_THROW(send<int>(animal, SEL("speak")), NSException);
    EXPECT_EQ(send<int>(animal, SEL("count:")), 1);
    EXPECT_EQ(base.instanceMethod(SEL("speak"))->typeEncoding, "i@:");
}

// --- Delayed blocks

TEST(RunAfterDelay, RunsOnceAfterTheDelayNeverWithinTheCall) {
    HeadlessClock clock;
    HeadlessRunLoop loop(clock);
    const ServiceScope scope(loop);
    std::string order;
    RunAfterDelay([&] { order += 'b'; }, 1.5);
    RunAfterDelay([&] { order += 'a'; }, 0);
    RunAfterDelay(nullptr, 0);
    EXPECT_EQ(order, "");
    loop.advance(1.4);
    EXPECT_EQ(order, "a");
    loop.advance(5);
    EXPECT_EQ(order, "ab");
}

} // namespace
