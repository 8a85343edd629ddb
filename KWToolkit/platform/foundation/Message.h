// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Messages: typed calls to methods found by name.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/Class.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace kw {

namespace detail {

// What travels in a message. Callers and methods agree on these types, so a method that takes a
// `std::uint16_t` can be sent an `unsigned short`, and one that takes a view can be sent any object
// (whether it is a view is checked on arrival).

template <class T>
concept Object = std::is_base_of_v<NSObject, T>;

template <class T>
struct SharedObject : std::false_type { };
template <Object T>
struct SharedObject<std::shared_ptr<T>> : std::true_type { };

template <class T>
concept ObjectArgument = Object<T> || SharedObject<T>::value
    || (std::is_pointer_v<T> && Object<std::remove_cv_t<std::remove_pointer_t<T>>>);

template <class T>
concept Text = std::is_convertible_v<const T&, std::string_view>;

template <std::size_t size, bool isSigned>
consteval auto integerOfSize() {
    if constexpr (size == 1)
        return std::conditional_t<isSigned, signed char, unsigned char> {};
    else if constexpr (size == 2)
        return std::conditional_t<isSigned, short, unsigned short> {};
    else if constexpr (size == 4)
        return std::conditional_t<isSigned, int, unsigned int> {};
    else
        return std::conditional_t<isSigned, long long, unsigned long long> {};
}

template <class T>
consteval auto travelTypeOf() {
    if constexpr (std::is_void_v<T> || std::is_same_v<T, bool>)
        return std::type_identity<T> {};
    else if constexpr (std::is_enum_v<T>)
        return travelTypeOf<std::underlying_type_t<T>>();
    else if constexpr (std::is_integral_v<T>)
        return std::type_identity<decltype(integerOfSize<sizeof(T), std::is_signed_v<T>>())> {};
    else if constexpr (std::is_same_v<T, std::nullptr_t> || ObjectArgument<T>)
        return std::type_identity<NSObject*> {};
    else if constexpr (Text<T>)
        return std::type_identity<std::string> {};
    else
        return std::type_identity<T> {};
}

template <class T>
using TravelType = typename decltype(travelTypeOf<std::remove_cvref_t<std::decay_t<T>>>())::type;

// Objects are returned owned: a bare pointer would not say who keeps them alive.
template <class T>
using ReturnType = std::conditional_t<SharedObject<std::remove_cvref_t<T>>::value,
    std::shared_ptr<NSObject>, TravelType<T>>;

template <class T>
std::string encodingOfTravelType() {
    if constexpr (std::is_same_v<T, NSObject*> || std::is_same_v<T, std::shared_ptr<NSObject>>)
        return "@";
    else if constexpr (std::is_same_v<T, std::string>)
        return "@\"NSString\"";
    else if constexpr (std::is_same_v<T, bool>)
        return "B";
    else if constexpr (std::is_void_v<T>)
        return "v";
    else if constexpr (std::is_same_v<T, signed char>)
        return "c";
    else if constexpr (std::is_same_v<T, unsigned char>)
        return "C";
    else if constexpr (std::is_same_v<T, short>)
        return "s";
    else if constexpr (std::is_same_v<T, unsigned short>)
        return "S";
    else if constexpr (std::is_same_v<T, int>)
        return "i";
    else if constexpr (std::is_same_v<T, unsigned int>)
        return "I";
    else if constexpr (std::is_same_v<T, long long>)
        return "q";
    else if constexpr (std::is_same_v<T, unsigned long long>)
        return "Q";
    else if constexpr (std::is_same_v<T, float>)
        return "f";
    else if constexpr (std::is_same_v<T, double>)
        return "d";
    else
        return std::string("{").append(typeid(T).name()).append("}");
}

// Types are compared by the address of their signature, and by encoding only where those differ: a
// library that was loaded for itself alone has signatures of its own.

template <class R>
std::string encodeReturn() {
    return encodingOfTravelType<R>();
}
template <class R>
KW_EXPORT inline constexpr Signature returnSignature {&encodeReturn<R>};

template <class... A>
std::string encodeArguments() {
    return ("@:" + ... + encodingOfTravelType<A>());
}
template <class... A>
KW_EXPORT inline constexpr Signature argumentsSignature {&encodeArguments<A...>};

inline bool sameSignature(const Signature& one, const Signature& other) {
    return &one == &other || one.encode() == other.encode();
}

[[noreturn]] KW_EXPORT void throwUnrecognizedSelector(const NSObject& receiver, SEL selector);
[[noreturn]] KW_EXPORT void throwSignatureMismatch(const NSObject& receiver, SEL selector,
    const Implementation& implementation, const Signature& sentReturn,
    const Signature& sentArguments);
[[noreturn]] KW_EXPORT void throwWrongClass(const NSObject* object, const char* expectedTypeName);

/// The object as a `T`, or an exception that names both classes.
template <class T>
T& objectAs(NSObject* object) {
    if constexpr (std::is_same_v<std::remove_cv_t<T>, NSObject>) {
        if (object)
            return *object;
    } else if (auto* converted = dynamic_cast<T*>(object)) {
        return *converted;
    }
    throwWrongClass(object, typeid(T).name());
}

template <class T>
TravelType<T> pack(T&& value) {
    using Value = std::remove_cvref_t<T>;
    if constexpr (Object<Value>)
        return const_cast<Value*>(&value);
    else if constexpr (SharedObject<Value>::value)
        return value.get();
    else if constexpr (std::is_same_v<Value, std::nullptr_t>)
        return nullptr;
    else if constexpr (std::is_pointer_v<Value> && Text<Value>)
        return value ? std::string(value) : std::string();
    else if constexpr (Text<Value>)
        return std::string(std::string_view(value));
    else if constexpr (ObjectArgument<Value>)
        return const_cast<std::remove_cv_t<std::remove_pointer_t<Value>>*>(value);
    else
        return static_cast<TravelType<T>>(std::forward<T>(value));
}

/// The argument as the method declares it, valid while `value` is.
template <class Declared>
decltype(auto) unpack(TravelType<Declared>& value) {
    using Value = std::remove_cvref_t<Declared>;
    if constexpr (Object<Value>) {
        return objectAs<std::remove_reference_t<Declared>>(value);
    } else if constexpr (SharedObject<Value>::value) {
        using Element = typename Value::element_type;
        if (!value)
            return Value();
        objectAs<Element>(value);
        return std::static_pointer_cast<Element>(value->shared_from_this());
    } else if constexpr (ObjectArgument<Value>) {
        return value ? &objectAs<std::remove_pointer_t<Value>>(value) : nullptr;
    } else if constexpr (std::is_same_v<Value, TravelType<Declared>>) {
        return static_cast<Declared&&>(value);
    } else if constexpr (std::is_same_v<Value, const char*>) {
        return value.c_str();
    } else {
        return static_cast<Value>(value);
    }
}

// With `checksReceiver`, an object of another class than the code was written for is an exception.

template <class... A>
class PerformingImplementation : public Implementation {
public:
    using Implementation::Implementation;
    /// Drops the result, if there is one.
    virtual void perform(NSObject& receiver, bool checksReceiver, A... arguments) const = 0;
};

template <class R, class... A>
class ReturningImplementation : public PerformingImplementation<A...> {
public:
    using PerformingImplementation<A...>::PerformingImplementation;
    virtual R invoke(NSObject& receiver, bool checksReceiver, A... arguments) const = 0;
};

template <class R, class... A>
using TypedImplementation = std::conditional_t<std::is_void_v<R>, PerformingImplementation<A...>,
    ReturningImplementation<R, A...>>;

template <class Callable, class Receiver, class... Declared>
class BoundCallable {
public:
    explicit BoundCallable(Callable callable)
        : m_callable(std::move(callable)) { }

    decltype(auto) call(
        NSObject& receiver, bool checksReceiver, TravelType<Declared>&... arguments) const {
        Receiver& self =
            checksReceiver ? objectAs<Receiver>(&receiver) : static_cast<Receiver&>(receiver);
        return std::invoke(m_callable, self, unpack<Declared>(arguments)...);
    }

private:
    Callable m_callable;
};

template <class Callable, class Receiver, class R, class... Declared>
class BoundImplementation : public TypedImplementation<ReturnType<R>, TravelType<Declared>...> {
public:
    explicit BoundImplementation(Callable callable)
        : TypedImplementation<ReturnType<R>, TravelType<Declared>...>(
              returnSignature<ReturnType<R>>, argumentsSignature<TravelType<Declared>...>)
        , m_callable(std::move(callable)) { }

    void perform(
        NSObject& receiver, bool checksReceiver, TravelType<Declared>... arguments) const final {
        m_callable.call(receiver, checksReceiver, arguments...);
    }

protected:
    BoundCallable<Callable, Receiver, Declared...> m_callable;
};

template <class Callable, class Receiver, class R, class... Declared>
class BoundReturningImplementation final
    : public BoundImplementation<Callable, Receiver, R, Declared...> {
public:
    using BoundImplementation<Callable, Receiver, R, Declared...>::BoundImplementation;

    ReturnType<R> invoke(
        NSObject& receiver, bool checksReceiver, TravelType<Declared>... arguments) const final {
        return static_cast<ReturnType<R>>(
            this->m_callable.call(receiver, checksReceiver, arguments...));
    }
};

template <class Receiver, class R, class... Declared, class Callable>
Method makeMethod(std::string_view name, Callable callable) {
    static_assert(std::is_base_of_v<NSObject, Receiver>, "messages are sent to objects");
    static_assert(!std::is_pointer_v<R> || !ObjectArgument<R>,
        "a method that is called by name returns objects as std::shared_ptr");
    using Bound = std::conditional_t<std::is_void_v<R>,
        BoundImplementation<Callable, Receiver, R, Declared...>,
        BoundReturningImplementation<Callable, Receiver, R, Declared...>>;
    auto implementation = std::make_shared<Bound>(std::move(callable));
    return {SEL(name),
        implementation->returnSignature().encode() + implementation->argumentsSignature().encode(),
        implementation};
}

template <class Receiver, class R, class... Declared, class Callable>
Method makeMethodFromCall(
    std::string_view name, Callable callable, R (Callable::*)(Receiver&, Declared...) const) {
    return makeMethod<Receiver, R, Declared...>(name, std::move(callable));
}

} // namespace detail

/// An entry for a class's method table: `method("open:", &Player::open)`.
template <class Receiver, class R, class... Declared>
Method method(std::string_view name, R (Receiver::*function)(Declared...)) {
    return detail::makeMethod<Receiver, R, Declared...>(name, function);
}

template <class Receiver, class R, class... Declared>
Method method(std::string_view name, R (Receiver::*function)(Declared...) const) {
    return detail::makeMethod<Receiver, R, Declared...>(name, function);
}

/// The same from a callable that takes the receiver first:
/// `method("stop", [](Player& player) { … })`.
template <class Callable>
    requires requires { &Callable::operator(); }
Method method(std::string_view name, Callable callable) {
    return detail::makeMethodFromCall(name, std::move(callable), &Callable::operator());
}

/// Sends a message: finds the receiver's method of that name and calls it.
///
///     kw::send(player, kw::SEL("open:"), "song.ogg");
///     int volume = kw::send<int>(player, kw::SEL("volume"));
///
/// Arguments travel as the method's type encoding says, without conversion between kinds: integers
/// match by size and sign, strings are one kind, objects are one kind (pass them by reference,
/// pointer or `std::shared_ptr`; a `const` is not part of the encoding). The result must match
/// too, or be dropped by leaving out the template argument; objects come back as
/// `std::shared_ptr<NSObject>`.
///
/// Throws `NSException` named "NSInvalidArgumentException", and calls nothing, when the receiver
/// has no such method, when the arguments are of other types (the reason holds both encodings), or
/// when an object is not of the class that the method asks for.
template <class R = void, class... A>
R send(NSObject& receiver, SEL selector, A&&... arguments) {
    using Result = detail::ReturnType<R>;
    const Method* method = receiver.isa().instanceMethod(selector);
    if (!method) [[unlikely]]
        detail::throwUnrecognizedSelector(receiver, selector);

    const Implementation& implementation = *method->implementation;
    const detail::Signature& sentArguments = detail::argumentsSignature<detail::TravelType<A>...>;
    const detail::Signature& sentReturn = detail::returnSignature<Result>;
    if (!detail::sameSignature(implementation.argumentsSignature(), sentArguments)
        || (!std::is_void_v<R>
            && !detail::sameSignature(implementation.returnSignature(), sentReturn))) [[unlikely]]
        detail::throwSignatureMismatch(
            receiver, selector, implementation, sentReturn, sentArguments);

    const auto& typed =
        static_cast<const detail::TypedImplementation<Result, detail::TravelType<A>...>&>(
            implementation);
    if constexpr (std::is_void_v<R>)
        typed.perform(
            receiver, method->isTransplanted, detail::pack(std::forward<A>(arguments))...);
    else
        return static_cast<R>(typed.invoke(
            receiver, method->isTransplanted, detail::pack(std::forward<A>(arguments))...));
}

} // namespace kw
