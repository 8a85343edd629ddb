// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace {

using namespace kw;

TEST(WeakReference, EmptiesWhenItsObjectDies) {
    std::optional<NSObject> object(std::in_place);
    const WeakReference reference(*object);
    const WeakReference another(&*object);
    EXPECT_EQ(reference.lock().get(), &*object);
    object.reset();
    EXPECT_EQ(reference.lock(), nullptr);
    EXPECT_EQ(another.lock(), nullptr);
    EXPECT_EQ(WeakReference().lock(), nullptr);
    EXPECT_EQ(WeakReference(nullptr).lock(), nullptr);
}

TEST(WeakReference, KeepsASharedObjectAliveWhileLocked) {
    auto object = std::make_shared<NSObject>();
    const WeakReference reference(object);
    auto locked = reference.lock();
    object.reset();
    EXPECT_EQ(reference.lock(), locked);
    locked.reset();
    EXPECT_EQ(reference.lock(), nullptr);
}

TEST(WeakReference, IsEmptyInTheDestructorOfASharedObject) {
    struct Curious : NSObject {
        ~Curious() override { *seen = reference.lock() != nullptr; }
        WeakReference reference;
        bool* seen = nullptr;
    };
    bool seen = true;
    auto object = std::make_shared<Curious>();
    object->reference = WeakReference(object);
    object->seen = &seen;
    object.reset();
    EXPECT_FALSE(seen);
}

TEST(WeakReference, LockingRacesWithDestruction) {
    for (int round = 0; round < 200; ++round) {
        auto object = std::make_shared<NSObject>();
        const WeakReference reference(object);
        std::thread other([&] {
            if (const auto locked = reference.lock()) {
                EXPECT_FALSE(locked->respondsToSelector(SEL("x")));
            }
        });
        object.reset();
        other.join();
        EXPECT_EQ(reference.lock(), nullptr);
    }
}

} // namespace
