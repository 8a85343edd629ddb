// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What an object carries beside itself. Private to the foundation.
#pragma once

#include <KWToolkit/platform/foundation/AssociatedObjects.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace kw::detail {

/// Where weak references meet their object; outlives it.
struct WeakAnchor {
    std::mutex mutex;
    NSObject* object;
};

struct ObjectExtras {
    std::shared_ptr<WeakAnchor> anchor;
    std::mutex associationsMutex;
    std::unordered_map<const void*, std::shared_ptr<NSObject>> associations;

    /// The object's extras, made on first use; safe on any thread.
    static ObjectExtras& of(NSObject& object);
    /// Null where the object has none yet.
    static ObjectExtras* ifAny(const NSObject& object);
    /// Empties the weak references, and calls `also` before any of them is seen to be empty.
    static void forget(NSObject& object, const std::function<void()>& also);
    static void destroy(NSObject& object);
};

} // namespace kw::detail
