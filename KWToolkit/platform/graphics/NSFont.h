// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

namespace kw {

/// A font by description; the drawing context finds the real one.
struct NSFont {
    std::string family; ///< empty: the desktop's interface font
    double size = 0; ///< in points, as asked for; a size of 0 or less is drawn as the default, 13
    bool isBold = false;

    static constexpr double systemFontSize = 13;
    static constexpr double smallSystemFontSize = 11;

    /// What is drawn at the size asked for.
    double drawnSize() const { return size > 0 ? size : systemFontSize; }

    /// A family that the desktop does not have is drawn as the nearest that it has.
    static NSFont fontWithName(std::string family, double size) {
        return {std::move(family), size, false};
    }
    static NSFont systemFontOfSize(double size) { return {{}, size, false}; }
    static NSFont boldSystemFontOfSize(double size) { return {{}, size, true}; }

    friend bool operator==(const NSFont&, const NSFont&) = default;
};

} // namespace kw
