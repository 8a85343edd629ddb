// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/AssociatedObjects.h>

#include <KWToolkit/platform/foundation/ObjectExtras.h>

#include <utility>

namespace kw {

namespace detail {

ObjectExtras& ObjectExtras::of(NSObject& object) {
    if (ObjectExtras* const existing = ifAny(object))
        return *existing;
    auto made = std::make_unique<ObjectExtras>();
    made->anchor = std::make_shared<WeakAnchor>();
    made->anchor->object = &object;
    ObjectExtras* winner = nullptr;
    if (object.m_extras.compare_exchange_strong(winner, made.get(), std::memory_order_acq_rel))
        winner = made.release();
    return *winner;
}

ObjectExtras* ObjectExtras::ifAny(const NSObject& object) {
    return object.m_extras.load(std::memory_order_acquire);
}

void ObjectExtras::forget(NSObject& object, const std::function<void()>& also) {
    ObjectExtras* const extras = ifAny(object);
    std::unique_lock<std::mutex> lock;
    if (extras) {
        lock = std::unique_lock(extras->anchor->mutex);
        extras->anchor->object = nullptr;
    }
    also();
}

void ObjectExtras::destroy(NSObject& object) {
    const std::unique_ptr<ObjectExtras> extras(ifAny(object));
    if (!extras)
        return;
    // A value that dies may look at the object's associations, or even add one.
    while (!extras->associations.empty())
        const auto released = std::exchange(extras->associations, {});
    object.m_extras.store(nullptr, std::memory_order_release);
}

} // namespace detail

void objc_setAssociatedObject(
    NSObject& object, const void* key, std::shared_ptr<NSObject> value, AssociationPolicy policy) {
    if (policy == AssociationPolicy::assign)
        value = std::shared_ptr<NSObject>(std::shared_ptr<void>(), value.get());
    auto& extras = detail::ObjectExtras::of(object);
    // The former value is released after the lock is: its destructor may come back here.
    std::shared_ptr<NSObject> former;
    const std::lock_guard lock(extras.associationsMutex);
    if (value) {
        former = std::exchange(extras.associations[key], std::move(value));
    } else if (const auto found = extras.associations.find(key);
        found != extras.associations.end()) {
        former = std::move(found->second);
        extras.associations.erase(found);
    }
}

std::shared_ptr<NSObject> objc_getAssociatedObject(const NSObject& object, const void* key) {
    auto* const extras = detail::ObjectExtras::ifAny(object);
    if (!extras)
        return nullptr;
    const std::lock_guard lock(extras->associationsMutex);
    const auto found = extras->associations.find(key);
    return found == extras->associations.end() ? nullptr : found->second;
}

} // namespace kw
