// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CAMediaTimingFunction.h>

#include <KWToolkit/platform/foundation/NSException.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace kw {

namespace {

struct NamedCurve {
    std::string_view name;
    std::array<double, 4> points;
};
constexpr NamedCurve curves[] = {
    {kCAMediaTimingFunctionLinear, {0, 0, 1, 1}},
    {kCAMediaTimingFunctionEaseIn, {0.42, 0, 1, 1}},
    {kCAMediaTimingFunctionEaseOut, {0, 0, 0.58, 1}},
    {kCAMediaTimingFunctionEaseInEaseOut, {0.42, 0, 0.58, 1}},
    {kCAMediaTimingFunctionDefault, {0.25, 0.1, 0.25, 1}},
};

double finite(double value) { return std::isfinite(value) ? value : 0; }
// What is no number is not above 0.
double within01(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

/// One coordinate of the curve from 0 to 1 with the inner control points `p` and `q`.
double bezier(double p, double q, double t) {
    const double rest = 1 - t;
    return 3 * rest * rest * t * p + 3 * rest * t * t * q + t * t * t;
}

} // namespace

CAMediaTimingFunction::CAMediaTimingFunction(double c1x, double c1y, double c2x, double c2y)
    : m_points {within01(c1x), finite(c1y), within01(c2x), finite(c2y)} { }

CAMediaTimingFunction CAMediaTimingFunction::functionWithName(std::string_view name) {
    const auto* const found = std::ranges::find(curves, name, &NamedCurve::name);
    if (found == std::end(curves))
        throw NSException(
            NSInvalidArgumentException, "there is no timing function named " + std::string(name));
    const auto& [c1x, c1y, c2x, c2y] = found->points;
    return {c1x, c1y, c2x, c2y};
}

double CAMediaTimingFunction::progressAt(double time) const {
    const double x = within01(time);
    const auto& [c1x, c1y, c2x, c2y] = m_points;
    const bool isStraight = c1x == c1y && c2x == c2y;
    if (isStraight || x == 0 || x == 1)
        return x;
    // x only grows along the curve, which may stand upright somewhere: halving finds it always.
    double low = 0;
    double high = 1;
    for (int i = 0; i < 40; ++i) {
        const double middle = (low + high) / 2;
        (bezier(c1x, c2x, middle) < x ? low : high) = middle;
    }
    return bezier(c1y, c2y, (low + high) / 2);
}

} // namespace kw
