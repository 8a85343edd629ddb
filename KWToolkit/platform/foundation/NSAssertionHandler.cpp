// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSAssertionHandler.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>

namespace kw {

namespace {

thread_local NSAssertionHandler* installedHandler = nullptr;

} // namespace

NSAssertionHandler::~NSAssertionHandler() = default;

void NSAssertionHandler::handleFailure(const AssertionFailure& failure) {
    Platform::console().writeLine("*** Assertion failure in +[" + failure.className + " "
        + failure.method.name() + "], " + failure.file + ":" + std::to_string(failure.line));
    throw NSException(NSInternalInconsistencyException, failure.description);
}

NSAssertionHandler& NSAssertionHandler::currentHandler() {
    static auto& defaultHandler = *new NSAssertionHandler;
    return installedHandler ? *installedHandler : defaultHandler;
}

NSAssertionHandler::Scope::Scope(NSAssertionHandler& handler)
    : m_previous(installedHandler) {
    installedHandler = &handler;
}

NSAssertionHandler::Scope::~Scope() { installedHandler = m_previous; }

} // namespace kw
