// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/runtime/NSObject+Swizzle.h>

#include <KWToolkit/platform/foundation/NSAssertionHandler.h>
#include <KWToolkit/platform/foundation/NSException.h>

namespace kw {

namespace {

Method& methodOf(const Class& cls, SEL selector) {
    if (Method* const method = cls.instanceMethod(selector))
        return *method;
    throw NSException(NSInvalidArgumentException,
        "swapMethod:with: " + cls.name() + " has no method " + selector.name());
}

} // namespace

void swapMethod(Class& cls, SEL a, SEL b) {
    Method& methodA = methodOf(cls, a);
    Method& methodB = methodOf(cls, b);
    if (methodA.typeEncoding != methodB.typeEncoding) {
        NSAssertionHandler::currentHandler().handleFailure({
            .method = SEL("swapMethod:with:"),
            .className = cls.name(),
            .file = "NSObject+Swizzle",
            .line = 19,
            .description = "Method type encodings must be the same: " + methodA.typeEncoding
                + " vs. " + methodB.typeEncoding,
        });
    }

    if (cls.addMethod(a, methodB.implementation, methodB.typeEncoding))
        cls.replaceMethod(b, methodA.implementation, methodA.typeEncoding);
    else
        Class::exchangeImplementations(methodA, methodB);
}

} // namespace kw
