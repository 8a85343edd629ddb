// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Values attached to any object.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <memory>

namespace kw {

/// A key is an address and is compared as one: two strings of the same text are two keys. Use the
/// address of a constant of your own.
using AssociationKey = const void*;

/// Attaches a value that the object keeps alive until it is replaced or the object dies. An empty
/// value removes the association. Safe on any thread.
KW_EXPORT void associateValue(
    NSObject& object, std::shared_ptr<NSObject> value, AssociationKey key);

/// Attaches a bare reference: the value is neither kept alive nor forgotten when it dies, and must
/// not be read after that. Null removes the association. Safe on any thread.
KW_EXPORT void weaklyAssociateValue(NSObject& object, NSObject* value, AssociationKey key);

/// The value under the key, or null. For a weakly associated value the pointer owns nothing.
KW_EXPORT std::shared_ptr<NSObject> associatedValueForKey(
    const NSObject& object, AssociationKey key);

/// The same for a value known to be a `T`; null if it is none.
template <class T>
std::shared_ptr<T> associatedValueForKey(const NSObject& object, AssociationKey key) {
    return std::dynamic_pointer_cast<T>(associatedValueForKey(object, key));
}

} // namespace kw
