// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/SEL.h>

#include <string>
#include <string_view>

namespace kw {

/// Where and why an assertion failed.
struct AssertionFailure {
    SEL method;
    std::string className;
    std::string file;
    int line = 0;
    std::string description;
};

/// What happens when an assertion of the toolkit fails. Every thread has a current handler; the
/// default one writes a console line and throws an `NSException` named
/// "NSInternalInconsistencyException" whose reason is the description.
class KW_EXPORT NSAssertionHandler {
public:
    virtual ~NSAssertionHandler();

    /// Called on the thread of the failure. If it returns, the failing operation goes on.
    virtual void handleFailure(const AssertionFailure& failure);

    /// The calling thread's handler.
    static NSAssertionHandler& currentHandler();

    /// Makes a handler the calling thread's current one for a scope. The handler is not owned and
    /// must outlive the scope; scopes nest, and end on the thread that began them.
    class KW_EXPORT Scope {
    public:
        explicit Scope(NSAssertionHandler& handler);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        NSAssertionHandler* m_previous;
    };
};

} // namespace kw
