// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Responders put between others.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSResponder.h>

namespace kw {

/// Makes `responder` the next after `after`, and what was next the next after it.
KW_EXPORT void insertIntoResponderChain(NSResponder& after, NSResponder& responder);

} // namespace kw
