// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <array>
#include <string_view>

namespace kw {

// The names of the curves that there are.
inline constexpr std::string_view kCAMediaTimingFunctionLinear = "linear";
inline constexpr std::string_view kCAMediaTimingFunctionEaseIn = "easeIn";
inline constexpr std::string_view kCAMediaTimingFunctionEaseOut = "easeOut";
inline constexpr std::string_view kCAMediaTimingFunctionEaseInEaseOut = "easeInEaseOut";
inline constexpr std::string_view kCAMediaTimingFunctionDefault = "default";

/// The pace of an animation: a cubic curve from (0, 0) to (1, 1), time to progress.
class KW_EXPORT CAMediaTimingFunction {
public:
    /// With the curve's two inner control points. The x are taken to the nearer of 0 and 1 where
    /// they are outside, and what is no number to 0.
    CAMediaTimingFunction(double c1x, double c1y, double c2x, double c2y);
    /// Throws an `NSException` named "NSInvalidArgumentException" for a name that is not above.
    static CAMediaTimingFunction functionWithName(std::string_view name);

    /// c1x, c1y, c2x, c2y.
    const std::array<double, 4>& controlPoints() const { return m_points; }
    /// The progress at a part of the time. Before 0 that is 0, after 1 it is 1; between them it may
    /// leave that range, as the curve does.
    double progressAt(double time) const;

    friend bool operator==(const CAMediaTimingFunction&, const CAMediaTimingFunction&) = default;

private:
    std::array<double, 4> m_points;
};

} // namespace kw
