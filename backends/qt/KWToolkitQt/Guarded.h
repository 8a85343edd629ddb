// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace kw::qt {

/// Calls `task`; what it throws is written to the console, for Qt cannot let it through.
void callGuarded(const std::function<void()>& task);

} // namespace kw::qt
