// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>

#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/ReadableTypeName.h>

namespace kw {

namespace {

[[noreturn]] void throwUnknownKey(
    const std::string& whose, const char* message, std::string_view key) {
    throw NSException(NSUnknownKeyException,
        "[" + whose + " " + message + "]: this class is not key value coding-compliant for the key "
            + std::string(key) + ".");
}

constexpr const char* reading = "valueForUndefinedKey:";
constexpr const char* writing = "setValue:forUndefinedKey:";

struct Path {
    std::string_view first;
    std::string_view rest; ///< empty for a path of one key
};

Path split(std::string_view keyPath) {
    const auto dot = keyPath.find('.');
    return dot == std::string_view::npos ? Path {keyPath, {}}
                                         : Path {keyPath.substr(0, dot), keyPath.substr(dot + 1)};
}

/// The related object that a path leads through; null where there is none.
std::shared_ptr<NSObject> relatedObject(
    const NSObject& object, const Path& path, const char* message) {
    const std::any value = valueForKey(object, path.first);
    if (!value.has_value())
        return nullptr;
    const auto* const related = std::any_cast<std::shared_ptr<NSObject>>(&value);
    if (!related)
        throwUnknownKey(detail::readableTypeName(value.type().name()), message, path.rest);
    return *related;
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
        throwUnknownKey(object.description(), reading, key);
    return property->get(const_cast<NSObject&>(object));
}

std::any valueForKeyPath(const NSObject& object, std::string_view keyPath) {
    const Path path = split(keyPath);
    if (path.rest.empty())
        return valueForKey(object, keyPath);
    const auto related = relatedObject(object, path, reading);
    return related ? valueForKeyPath(*related, path.rest) : std::any();
}

void setValueForKey(NSObject& object, const std::any& value, std::string_view key) {
    const Property* const property = object.isa().property(SEL::existing(key));
    if (!property || !property->set)
        throwUnknownKey(object.description(), writing, key);
    if (!object.isObserved(property->name)) {
        property->set(object, value);
        return;
    }
    // The setter's own change, if it tells of one, is a part of this.
    detail::changeAnnounced(object, property->name, [&] { property->set(object, value); });
}

void setValueForKeyPath(NSObject& object, const std::any& value, std::string_view keyPath) {
    const Path path = split(keyPath);
    if (path.rest.empty())
        setValueForKey(object, value, keyPath);
    else if (const auto related = relatedObject(object, path, writing))
        setValueForKeyPath(*related, value, path.rest);
}

} // namespace kw
