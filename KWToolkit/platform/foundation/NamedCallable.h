// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace kw {

/// A callable with a name, taken wherever a target with an action is: the name stands for the
/// action's. It is owned by whoever takes it.
struct NamedCallable {
    std::string name;
    std::function<void()> callable;
};

} // namespace kw
