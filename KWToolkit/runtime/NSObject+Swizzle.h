// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Exchanging methods, for instrumentation and patches.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/Class.h>

namespace kw {

/// Exchanges the implementations of two methods of a class.
///
/// Where the class defines `a` itself, the two are exchanged in place: subclasses that inherit them
/// see it, and so does a superclass that `b` comes from. Where it only inherits `a`, it gets
/// methods of its own and the superclass of `a` is left alone.
///
/// Methods of different type encodings are an assertion failure, which by default throws and
/// exchanges nothing; under a handler that returns, the exchange goes ahead, and a message is then
/// checked against the code it meets. A selector without a method in the class throws `NSException`
/// named "NSInvalidArgumentException". For start-up, before other threads send messages.
KW_EXPORT void swapMethod(Class& cls, SEL a, SEL b);

} // namespace kw
