// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <KWToolkit/platform/foundation/ObjectExtras.h>

namespace kw {

WeakReference::WeakReference(NSObject& object)
    : m_anchor(detail::ObjectExtras::of(object).anchor) { }

WeakReference::WeakReference(NSObject* object) {
    if (object)
        *this = WeakReference(*object);
}

std::shared_ptr<NSObject> WeakReference::lock() const {
    if (!m_anchor)
        return nullptr;
    const std::lock_guard guard(m_anchor->mutex);
    NSObject* const object = m_anchor->object;
    if (!object)
        return nullptr;

    const std::weak_ptr<NSObject> shared = object->weak_from_this();
    const std::weak_ptr<NSObject> never;
    const bool wasEverShared = shared.owner_before(never) || never.owner_before(shared);
    if (wasEverShared)
        return shared.lock();
    return {std::shared_ptr<void>(), object};
}

void WeakReference::whileItLives(const std::function<void(const NSObject&)>& call) const {
    if (!m_anchor)
        return;
    const std::lock_guard guard(m_anchor->mutex);
    if (m_anchor->object)
        call(*m_anchor->object);
}

} // namespace kw
