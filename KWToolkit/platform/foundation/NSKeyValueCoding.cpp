// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>

#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/ReadableTypeName.h>

namespace kw {

namespace {

[[noreturn]] void throwUnknownKey(
    const NSObject& object, const char* message, std::string_view key) {
    throw NSException(NSUnknownKeyException,
        "[" + object.description() + " " + message
            + "]: this class is not key value coding-compliant for the key " + std::string(key)
            + ".");
}

/// The related object that a path leads through; null where there is none.
std::shared_ptr<NSObject> relatedObject(const NSObject& object, std::string_view key) {
    return unboxed<std::shared_ptr<NSObject>>(valueForKey(object, key));
}

} // namespace

namespace detail {

void throwUnsuitableValue(const std::any& value, const char* typeName) {
    throw NSException(NSInvalidArgumentException,
        (value.has_value() ? "a value of type " + readableTypeName(value.type().name())
                           : std::string("no value"))
            + " was given where a " + readableTypeName(typeName) + " is needed");
}

} // namespace detail

std::any valueForKey(const NSObject& object, std::string_view key) {
    const Property* const property = object.isa().property(SEL::existing(key));
    if (!property)
        throwUnknownKey(object, "valueForUndefinedKey:", key);
    return property->get(const_cast<NSObject&>(object));
}

std::any valueForKeyPath(const NSObject& object, std::string_view keyPath) {
    const auto dot = keyPath.find('.');
    if (dot == std::string_view::npos)
        return valueForKey(object, keyPath);
    std::shared_ptr<NSObject> related = relatedObject(object, keyPath.substr(0, dot));
    return related ? valueForKeyPath(*related, keyPath.substr(dot + 1)) : std::any();
}

void setValueForKey(NSObject& object, const std::any& value, std::string_view key) {
    const Property* const property = object.isa().property(SEL::existing(key));
    if (!property || !property->set)
        throwUnknownKey(object, "setValue:forUndefinedKey:", key);
    if (!object.hasObservers()) {
        property->set(object, value);
        return;
    }
    // The setter's own change, if it tells of one, is a part of this.
    detail::changeAnnounced(object, property->name, [&] { property->set(object, value); });
}

void setValueForKeyPath(NSObject& object, const std::any& value, std::string_view keyPath) {
    const auto dot = keyPath.find('.');
    if (dot == std::string_view::npos) {
        setValueForKey(object, value, keyPath);
    } else if (const auto related = relatedObject(object, keyPath.substr(0, dot))) {
        setValueForKeyPath(*related, value, keyPath.substr(dot + 1));
    }
}

} // namespace kw
