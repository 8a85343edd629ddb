// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace kw::fuzz {

/// Ends the program where a property does not hold.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace kw::fuzz
