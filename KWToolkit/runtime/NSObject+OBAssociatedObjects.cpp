// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/runtime/NSObject+OBAssociatedObjects.h>

#include <KWToolkit/platform/foundation/AssociatedObjects.h>

#include <utility>

namespace kw {

void associateValue(NSObject& object, std::shared_ptr<NSObject> value, AssociationKey key) {
    objc_setAssociatedObject(object, key, std::move(value), AssociationPolicy::retainNonatomic);
}

void weaklyAssociateValue(NSObject& object, NSObject* value, AssociationKey key) {
    const std::shared_ptr<NSObject> bare(std::shared_ptr<void>(), value);
    objc_setAssociatedObject(object, key, bare, AssociationPolicy::assign);
}

std::shared_ptr<NSObject> associatedValueForKey(const NSObject& object, AssociationKey key) {
    return objc_getAssociatedObject(object, key);
}

} // namespace kw
