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

struct Value : NSObject {
    explicit Value(std::vector<std::string>& log, NSObject* comesBackTo = nullptr)
        : deaths(log)
        , owner(comesBackTo) { }
    ~Value() override {
        deaths.emplace_back("value");
        if (owner)
            associateValue(*owner, std::make_shared<NSObject>(), this);
    }
    std::vector<std::string>& deaths;
    NSObject* owner;
};

TEST(AssociatedValues, AreKeptUntilReplacedRemovedOrOrphaned) {
    std::vector<std::string> deaths;
    static const char key = 0, otherKey = 0;
    {
        NSObject owner;
        EXPECT_EQ(associatedValueForKey(owner, &key), nullptr);
        associateValue(owner, std::make_shared<Value>(deaths), &key);
        associateValue(owner, std::make_shared<Value>(deaths), &otherKey);
        EXPECT_NE(associatedValueForKey<Value>(owner, &key), nullptr);
        EXPECT_NE(associatedValueForKey(owner, &key), associatedValueForKey(owner, &otherKey));
        EXPECT_TRUE(deaths.empty());
        associateValue(owner, std::make_shared<NSObject>(), &key);
        EXPECT_EQ(deaths.size(), 1u);
        EXPECT_EQ(associatedValueForKey<Value>(owner, &key), nullptr); // there, but no Value
        associateValue(owner, nullptr, &key);
        EXPECT_EQ(associatedValueForKey(owner, &key), nullptr);
    }
    EXPECT_EQ(deaths.size(), 2u);
}

TEST(AssociatedValues, KeysAreComparedByAddress) {
    NSObject owner;
    const std::string one = "key", other = "key";
    associateValue(owner, std::make_shared<NSObject>(), one.data());
    EXPECT_EQ(associatedValueForKey(owner, other.data()), nullptr);
}

TEST(AssociatedValues, WeakOnesAreNeitherKeptNorForgotten) {
    NSObject owner;
    static const char key = 0;
    auto value = std::make_shared<NSObject>();
    NSObject* const address = value.get();
    weaklyAssociateValue(owner, address, &key);
    EXPECT_EQ(value.use_count(), 1);
    EXPECT_EQ(associatedValueForKey(owner, &key).get(), address);
    value.reset();
    EXPECT_EQ(associatedValueForKey(owner, &key).get(), address);
    weaklyAssociateValue(owner, nullptr, &key);
    EXPECT_EQ(associatedValueForKey(owner, &key), nullptr);
}

TEST(AssociatedValues, AValueThatDiesMayComeBackToItsOwner) {
    std::vector<std::string> deaths;
    static const char key = 0;
    {
        NSObject owner;
        associateValue(owner, std::make_shared<Value>(deaths, &owner), &key);
        associateValue(owner, nullptr, &key); // associates another while it dies
        associateValue(owner, std::make_shared<Value>(deaths, &owner), &key);
    } // and so while the owner dies
    EXPECT_EQ(deaths.size(), 2u);
}

// --- Exchanged methods

class Animal : public NSObject {
public:
    static Class& classObject() {
        static Class object("Animal", NSObject::classObject(), {});
        return object;
    }
    Class& isa() const override { return *cls; }
    Class* cls = &classObject();
};

class Dog : public Animal {
public:
    int bark() const { return loudness; }
    int loudness = 7;
};

/// Fresh classes for each test: Base (speak, walk, count:) < Derived (run, guard).
struct SwizzleTest : testing::Test {
    Class base {"Base", Animal::classObject(),
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
        Dog dog;
        dog.cls = &cls;
        return send<int>(dog, SEL(message));
    }
};

TEST_F(SwizzleTest, OwnMethodsAreExchangedForSubclassesToo) {
    swapMethod(base, SEL("speak"), SEL("walk"));
    for (Class* cls : {&base, &derived}) {
        EXPECT_EQ(ask(*cls, "speak"), 2);
        EXPECT_EQ(ask(*cls, "walk"), 1);
    }
    swapMethod(base, SEL("speak"), SEL("walk"));
    EXPECT_EQ(ask(derived, "speak"), 1);
}

TEST_F(SwizzleTest, AnInheritedFirstMethodLeavesTheSuperclassAlone) {
    swapMethod(derived, SEL("speak"), SEL("run"));
    EXPECT_EQ(ask(derived, "speak"), 3);
    EXPECT_EQ(ask(derived, "run"), 1);
    EXPECT_EQ(ask(base, "speak"), 1);
    EXPECT_EQ(base.instanceMethod(SEL("run")), nullptr);

    swapMethod(derived, SEL("count:"), SEL("count:"));
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
    Animal cat; // has walk, which is now a dog's
    cat.cls = &base;
    EXPECT_THROW(send<int>(cat, SEL("walk")), NSException);
}

TEST_F(SwizzleTest, MismatchedEncodingsAreAnAssertionFailure) {
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
    EXPECT_EQ(ask(base, "speak"), 1);
}

TEST_F(SwizzleTest, AHandlerThatReturnsLetsTheExchangeGoAhead) {
    struct Handler : NSAssertionHandler {
        void handleFailure(const AssertionFailure& failure) override { seen = failure; }
        AssertionFailure seen;
    } handler;
    {
        const NSAssertionHandler::Scope scope(handler);
        swapMethod(base, SEL("speak"), SEL("count:"));
    }
    EXPECT_EQ(handler.seen.method, SEL("swapMethod:with:"));
    EXPECT_EQ(handler.seen.className, "Base");
    EXPECT_EQ(handler.seen.file, "NSObject+Swizzle");
    EXPECT_EQ(handler.seen.line, 19);

    // Messages are checked against the code they meet, not against the entry's encoding.
    Animal animal;
    animal.cls = &base;
    EXPECT_EQ(send<int>(animal, SEL("speak"), 5), 5);
    EXPECT_THROW(send<int>(animal, SEL("speak")), NSException);
    EXPECT_EQ(send<int>(animal, SEL("count:")), 1);
    EXPECT_EQ(base.instanceMethod(SEL("speak"))->typeEncoding, "i@:");
}

TEST_F(SwizzleTest, UnknownSelectorsAreAnError) {
    EXPECT_THROW(swapMethod(base, SEL("speak"), SEL("fly")), NSException);
    EXPECT_THROW(swapMethod(base, SEL(), SEL("speak")), NSException);
    EXPECT_EQ(ask(base, "speak"), 1);
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
    loop.runOnce(0);
    EXPECT_EQ(order, "a");
    loop.advance(1.4);
    EXPECT_EQ(order, "a");
    loop.advance(5);
    EXPECT_EQ(order, "ab");
}

} // namespace
