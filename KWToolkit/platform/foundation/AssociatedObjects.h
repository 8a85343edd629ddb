// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <cstdint>
#include <memory>

namespace kw {

/// How an object holds a value associated with it; the runtime's own numbers.
enum class AssociationPolicy : std::uintptr_t {
    assign = 0, ///< a bare reference: neither kept alive nor cleared when the value dies
    retainNonatomic = 0x301, ///< kept alive until replaced or until the object dies
};

/// Attaches a value to an object under a key that is compared by address. An empty value removes
/// the association. Safe on any thread.
KW_EXPORT void objc_setAssociatedObject(
    NSObject& object, const void* key, std::shared_ptr<NSObject> value, AssociationPolicy policy);

/// The value, or null if there is none. Where it was stored with `assign` the pointer owns nothing,
/// and it dangles once the value is destroyed. Safe on any thread.
KW_EXPORT std::shared_ptr<NSObject> objc_getAssociatedObject(
    const NSObject& object, const void* key);

} // namespace kw
