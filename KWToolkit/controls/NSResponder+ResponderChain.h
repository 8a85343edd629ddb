// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Responders put between others.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSResponder.h>

namespace kw {

/// Makes `responder` the next after `after`, and what was next the next after it. After a
/// `KWControlledView` with a controller it comes after that. One that is next already stays there.
KW_EXPORT void insertIntoResponderChain(NSResponder& after, NSResponder& responder);

} // namespace kw
