// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace kw {

/// A date that is now is neither in the past nor in the future.
inline bool isInThePast(std::chrono::system_clock::time_point date) {
    return date < std::chrono::system_clock::now();
}

inline bool isInTheFuture(std::chrono::system_clock::time_point date) {
    return date > std::chrono::system_clock::now();
}

} // namespace kw
