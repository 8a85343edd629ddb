// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Values read and written by the names of properties.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/Property.h>

#include <any>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kw {

/// The name of the exception for a property that the class has not, or cannot write.
inline constexpr const char* NSUnknownKeyException = "NSUnknownKeyException";

// A value travels as a `std::any` that holds
//
//     bool                       a bool
//     std::int64_t               any integer or enumeration that fits, else std::uint64_t
//     double                     a float or a double
//     std::string                any text
//     std::shared_ptr<NSObject>  an object of any class
//     nothing                    no object, or an empty std::optional
//     T                          anything else, as it is
//
// so that neither side needs to know how the other declares it. On the way back numbers become
// whatever number is asked for, a fraction cut off.

/// A value as it travels.
template <class T>
std::any boxed(T&& value);

/// A value that travelled, as a `T`. Throws an `NSException` named "NSInvalidArgumentException" for
/// one of another kind, a number that does not fit, an object of another class, and for none where
/// `T` is not an object or a `std::optional`.
template <class T>
T unboxed(const std::any& value);

/// An entry for a class's property table, with a getter and a setter, a getter alone, or a data
/// member:
///
///     kw::property("title", &Document::title, &Document::setTitle)
///     kw::property("author", &Document::m_author)
///     kw::property("wordCount", [](const Document& document) { … })
///
/// A property that is written by its name tells its observers once, whether its setter does or not
/// (see NSKeyValueObserving.h).
template <class Getter>
Property property(std::string_view name, Getter getter);
template <class Getter, class Setter>
Property property(std::string_view name, Getter getter, Setter setter);

/// The value of the object's property. Throws an `NSException` named "NSUnknownKeyException" where
/// the class has none of that name.
KW_EXPORT std::any valueForKey(const NSObject& object, std::string_view key);
/// Follows properties through related objects: "author.address.city". Nothing where one of the
/// objects is absent. Throws as `valueForKey`, also for a path through what is no object.
KW_EXPORT std::any valueForKeyPath(const NSObject& object, std::string_view keyPath);
template <class T>
T valueForKey(const NSObject& object, std::string_view key) {
    return unboxed<T>(valueForKey(object, key));
}
template <class T>
T valueForKeyPath(const NSObject& object, std::string_view keyPath) {
    return unboxed<T>(valueForKeyPath(object, keyPath));
}

/// Writes the object's property and tells its observers. Throws as `valueForKey`, also for a
/// property that cannot be written, and as `unboxed`.
KW_EXPORT void setValueForKey(NSObject& object, const std::any& value, std::string_view key);
/// Does nothing where one of the objects on the way is absent.
KW_EXPORT void setValueForKeyPath(
    NSObject& object, const std::any& value, std::string_view keyPath);
template <class T>
    requires(!std::same_as<std::remove_cvref_t<T>, std::any>)
void setValueForKey(NSObject& object, T&& value, std::string_view key) {
    setValueForKey(object, boxed(std::forward<T>(value)), key);
}
template <class T>
    requires(!std::same_as<std::remove_cvref_t<T>, std::any>)
void setValueForKeyPath(NSObject& object, T&& value, std::string_view keyPath) {
    setValueForKeyPath(object, boxed(std::forward<T>(value)), keyPath);
}

namespace detail {

[[noreturn]] KW_EXPORT void throwUnsuitableValue(const std::any& value, const char* typeName);

template <class T>
struct OptionalValue : std::false_type { };
template <class T>
struct OptionalValue<std::optional<T>> : std::true_type { };

template <std::integral Integer, std::integral From>
std::optional<Integer> converted(From value) {
    using Standard = TravelType<Integer>; // a character is as good as an integer of its size
    return std::in_range<Standard>(value) ? std::optional(static_cast<Integer>(value))
                                          : std::nullopt;
}
template <std::integral Integer>
std::optional<Integer> converted(double value) {
    // Both limits are exact as they are powers of two.
    constexpr auto least = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr double beyond =
        2.0 * static_cast<double>(Integer {1} << (std::numeric_limits<Integer>::digits - 1));
    const double whole = std::trunc(value);
    return whole >= least && whole < beyond ? std::optional(static_cast<Integer>(whole))
                                            : std::nullopt;
}

template <class T>
std::optional<T> numberFrom(const std::any& value) {
    const auto as = [](auto number) -> std::optional<T> {
        if constexpr (std::same_as<T, bool>)
            return number != 0;
        else if constexpr (std::floating_point<T>)
            return static_cast<T>(number);
        else
            return converted<T>(number);
    };
    if (const auto* const boolean = std::any_cast<bool>(&value))
        return as(static_cast<int>(*boolean));
    if (const auto* const integer = std::any_cast<std::int64_t>(&value))
        return as(*integer);
    if (const auto* const large = std::any_cast<std::uint64_t>(&value))
        return as(*large);
    if (const auto* const real = std::any_cast<double>(&value))
        return as(*real);
    return std::nullopt;
}

/// The class that a getter or setter of a property is of.
template <class R, class Receiver>
Receiver receiverOf(R Receiver::*);
template <class Callable, class R, class Receiver, class... A>
std::remove_cvref_t<Receiver> receiverOfCall(R (Callable::*)(Receiver, A...) const);
template <class Callable>
    requires requires { &Callable::operator(); }
decltype(receiverOfCall(&Callable::operator())) receiverOf(Callable);

/// What a setter takes.
template <class Receiver, class Value>
std::remove_cvref_t<Value> valueOfSetter(void (Receiver::*)(Value));
template <class Callable, class Receiver, class Value>
std::remove_cvref_t<Value> valueOfSetterCall(void (Callable::*)(Receiver, Value) const);
template <class Callable>
    requires requires { &Callable::operator(); }
decltype(valueOfSetterCall(&Callable::operator())) valueOfSetter(Callable);

} // namespace detail

template <class T>
std::any boxed(T&& value) {
    using Value = std::decay_t<T>;
    static_assert(!std::is_pointer_v<Value> || !detail::ObjectArgument<Value>,
        "objects travel as std::shared_ptr");
    if constexpr (std::same_as<Value, std::any>) {
        return std::forward<T>(value);
    } else if constexpr (std::same_as<Value, std::nullptr_t>) {
        return {};
    } else if constexpr (std::same_as<Value, bool>) {
        return value;
    } else if constexpr (std::is_enum_v<Value>) {
        return boxed(static_cast<std::underlying_type_t<Value>>(value));
    } else if constexpr (std::integral<Value>) {
        if (std::in_range<std::int64_t>(+value))
            return static_cast<std::int64_t>(value);
        return static_cast<std::uint64_t>(value);
    } else if constexpr (std::floating_point<Value>) {
        return static_cast<double>(value);
    } else if constexpr (std::is_pointer_v<std::remove_cvref_t<T>> && detail::Text<Value>) {
        return value ? std::any(std::string(value)) : std::any();
    } else if constexpr (detail::Text<Value>) {
        return std::string(std::forward<T>(value));
    } else if constexpr (detail::SharedObject<Value>::value) {
        return value ? std::any(std::shared_ptr<NSObject>(std::forward<T>(value))) : std::any();
    } else if constexpr (detail::OptionalValue<Value>::value) {
        return value ? boxed(*std::forward<T>(value)) : std::any();
    } else {
        return std::forward<T>(value);
    }
}

template <class T>
T unboxed(const std::any& value) {
    if constexpr (std::same_as<T, std::any>) {
        return value;
    } else if constexpr (std::is_enum_v<T>) {
        return static_cast<T>(unboxed<std::underlying_type_t<T>>(value));
    } else if constexpr (std::is_arithmetic_v<T>) {
        if (const auto number = detail::numberFrom<T>(value))
            return *number;
    } else if constexpr (detail::SharedObject<T>::value) {
        if (!value.has_value())
            return nullptr;
        if (const auto* const object = std::any_cast<std::shared_ptr<NSObject>>(&value)) {
            detail::objectAs<typename T::element_type>(object->get());
            return std::static_pointer_cast<typename T::element_type>(*object);
        }
    } else if constexpr (detail::OptionalValue<T>::value) {
        return value.has_value() ? T(unboxed<typename T::value_type>(value)) : std::nullopt;
    } else if (const auto* const held = std::any_cast<T>(&value)) {
        return *held;
    }
    detail::throwUnsuitableValue(value, typeid(T).name());
}

template <class Getter>
Property property(std::string_view name, Getter getter) {
    using Receiver = decltype(detail::receiverOf(getter));
    Property result {.name = SEL(name),
        .get = [getter](NSObject& object) -> std::any {
            return boxed(std::invoke(getter, detail::objectAs<Receiver>(&object)));
        },
        .set = {}};
    if constexpr (std::is_member_object_pointer_v<Getter>) {
        result.set = [getter](NSObject& object, const std::any& value) {
            auto& member = std::invoke(getter, detail::objectAs<Receiver>(&object));
            member = unboxed<std::remove_reference_t<decltype(member)>>(value);
        };
    }
    return result;
}

template <class Getter, class Setter>
Property property(std::string_view name, Getter getter, Setter setter) {
    Property result = property(name, std::move(getter));
    result.set = [setter = std::move(setter)](NSObject& object, const std::any& value) {
        using Receiver = decltype(detail::receiverOf(setter));
        std::invoke(setter, detail::objectAs<Receiver>(&object),
            unboxed<decltype(detail::valueOfSetter(setter))>(value));
    };
    return result;
}

} // namespace kw
