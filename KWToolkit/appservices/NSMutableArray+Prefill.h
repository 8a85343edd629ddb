// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/PropertyList.h>

#include <cstddef>

namespace kw {

/// As many nulls, for values to take their places.
inline PropertyList arrayWithSize(std::size_t size) {
    PropertyList list(size, NSNull()); // with braces it would be two values
    return list;
}

} // namespace kw
