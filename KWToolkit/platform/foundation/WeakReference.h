// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <concepts>
#include <functional>
#include <memory>

namespace kw {

namespace detail {
struct WeakAnchor;
}

/// A reference that does not keep its object alive and that becomes empty when the object dies,
/// wherever the object lives (stack, member, shared pointer).
class KW_EXPORT WeakReference {
public:
    WeakReference() = default;
    WeakReference(std::nullptr_t) { }
    WeakReference(NSObject& object);
    WeakReference(NSObject* object);
    template <std::derived_from<NSObject> T>
    WeakReference(const std::shared_ptr<T>& object)
        : WeakReference(static_cast<NSObject*>(object.get())) { }

    /// The object, or null once its destruction has begun. An object that is owned by shared
    /// pointers stays alive as long as the result; any other is merely pointed to, and its owner
    /// must not destroy it on another thread meanwhile.
    std::shared_ptr<NSObject> lock() const;

    /// Calls with the object, also where it is shared and its last owner has let go, as long as it
    /// is an `NSObject`; its destructor waits for the call. That must be brief, and must neither
    /// lock nor make references to the object.
    void whileItLives(const std::function<void(const NSObject&)>& call) const;

private:
    std::shared_ptr<detail::WeakAnchor> m_anchor;
};

} // namespace kw
