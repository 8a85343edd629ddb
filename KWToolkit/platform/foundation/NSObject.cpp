// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSObject.h>

#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/ObjectExtras.h>
#include <KWToolkit/platform/foundation/Observations.h>
#include <KWToolkit/platform/foundation/ReadableTypeName.h>

#include <cxxabi.h>

#include <cstdio>
#include <cstdlib>

namespace kw {

namespace {

std::string methodName(const NSObject& receiver, SEL selector) {
    return "-[" + receiver.isa().name() + " " + selector.name() + "]";
}

std::string addressText(const NSObject& object) {
    char address[32];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(&object));
    return address;
}

} // namespace

NSObject::~NSObject() {
    // What dies with the object may leave something behind, in a destructor of its own.
    while (m_extras.load(std::memory_order_acquire)
        || m_observations.load(std::memory_order_acquire)) {
        detail::ObservationInfo::objectDies(*this);
        detail::ObjectExtras::destroy(*this);
    }
}

Class& NSObject::classObject() {
    static auto& object = *new Class("NSObject", nullptr, {});
    return object;
}

Class& NSObject::isa() const { return classObject(); }

std::string NSObject::description() const {
    return "<" + isa().name() + ": " + addressText(*this) + ">";
}

void NSObject::performSelector(SEL selector) { send(*this, selector); }

void NSObject::observeValueForKeyPath(
    const std::string& keyPath, NSObject& object, const NSKeyValueChange&, const void*) {
    throw NSException(NSInternalInconsistencyException,
        description()
            + ": An -observeValueForKeyPath:ofObject:change:context: message was received but not "
              "handled. Key path: "
            + keyPath + " Observed object: " + object.description());
}

namespace detail {

std::string readableTypeName(const char* typeName) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(typeName, nullptr, nullptr, &status), &std::free);
    return status == 0 ? readable.get() : typeName;
}

void throwUnrecognizedSelector(const NSObject& receiver, SEL selector) {
    throw NSException(NSInvalidArgumentException,
        methodName(receiver, selector) + ": unrecognized selector sent to instance "
            + addressText(receiver));
}

void throwSignatureMismatch(const NSObject& receiver, SEL selector,
    const Implementation& implementation, const Signature& sentReturn,
    const Signature& sentArguments) {
    throw NSException(NSInvalidArgumentException,
        methodName(receiver, selector) + ": the method's encoding is "
            + implementation.returnSignature().encode()
            + implementation.argumentsSignature().encode() + ", the message's is "
            + sentReturn.encode() + sentArguments.encode());
}

void throwWrongClass(const NSObject* object, const char* expectedTypeName) {
    throw NSException(NSInvalidArgumentException,
        (object ? "an object of class " + object->isa().name() : std::string("no object"))
            + " was sent where a " + readableTypeName(expectedTypeName) + " is needed");
}

} // namespace detail

} // namespace kw
