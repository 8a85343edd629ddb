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
    EXPECT_EQ(reference.lock().get(), &*object);
    object.reset();
    EXPECT_EQ(reference.lock(), nullptr);
    EXPECT_EQ(WeakReference(nullptr).lock(), nullptr);
}

TEST(WeakReference, KeepsASharedObjectAliveWhileLockedAndIsEmptyInItsDestructor) {
    struct Curious : NSObject {
        ~Curious() override { *seen = reference.lock() != nullptr; }
        WeakReference reference;
        bool* seen = nullptr;
    };
    bool seen = true;
    auto object = std::make_shared<Curious>();
    object->reference = WeakReference(object);
    object->seen = &seen;
    auto locked = object->reference.lock();
    object.reset();
    EXPECT_TRUE(seen); // it lives
    locked.reset();
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
