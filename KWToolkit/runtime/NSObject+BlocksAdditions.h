// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Blocks run after a delay.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <functional>

namespace kw {

/// Calls a block without arguments. An empty block does nothing.
KW_EXPORT void my_callBlock(const std::function<void()>& block);

/// Calls `block` once after `delay` seconds on the calling thread's run loop, which must run; on
/// its next pass, never within this call, for 0, less, or not a number.
KW_EXPORT void RunAfterDelay(std::function<void()> block, double delay);

} // namespace kw
