// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <functional>

namespace kw {

/// Calls `task`; what it throws is written to the console. For calls out of what cannot let an
/// exception through: a thread's outermost function, a loop that is not the toolkit's own.
KW_EXPORT void callGuarded(const std::function<void()>& task);

} // namespace kw
