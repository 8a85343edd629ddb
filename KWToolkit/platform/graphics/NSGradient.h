// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSColor.h>

#include <initializer_list>
#include <vector>

namespace kw {

/// Colors along a line: linear between stops, constant before the first and behind the last.
class NSGradient {
public:
    struct Stop {
        NSColor color;
        double location; ///< 0 to 1, ascending
        friend bool operator==(const Stop&, const Stop&) = default;
    };

    NSGradient(std::initializer_list<Stop> stops)
        : m_stops(stops) { }

    const std::vector<Stop>& stops() const { return m_stops; }

    friend bool operator==(const NSGradient&, const NSGradient&) = default;

private:
    std::vector<Stop> m_stops;
};

} // namespace kw
