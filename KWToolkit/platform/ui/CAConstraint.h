// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kw {

/// The platform's own numbers.
enum class CAConstraintAttribute { minX, midX, maxX, width, minY, midY, maxY, height };

/// Puts an attribute of a layer's frame where an attribute of another one is, times the scale and
/// plus the offset, in the coordinates of their superlayer.
struct CAConstraint {
    CAConstraintAttribute attribute = CAConstraintAttribute::minX;
    /// The name of a sublayer of the same superlayer, or "superlayer".
    std::string sourceName;
    CAConstraintAttribute sourceAttribute = CAConstraintAttribute::minX;
    double scale = 1;
    double offset = 0;
    friend bool operator==(const CAConstraint&, const CAConstraint&) = default;
};

} // namespace kw
