// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <functional>
#include <string>

namespace kw {

/// The value of an environment variable; empty where it is not set, which means the same in all
/// that are read here.
using Environment = std::function<std::string(const char* name)>;

inline std::string processEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

} // namespace kw
