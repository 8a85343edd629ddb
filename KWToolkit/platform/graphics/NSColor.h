// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

namespace kw {

/// A color in one of the calibrated spaces. Components run from 0 to 1.
class NSColor {
public:
    enum class Space { calibratedWhite, calibratedRGB };

    static constexpr NSColor colorWithCalibratedWhite(double white, double alpha) {
        return {Space::calibratedWhite, white, white, white, alpha};
    }
    static constexpr NSColor colorWithCalibratedRed(
        double red, double green, double blue, double alpha) {
        return {Space::calibratedRGB, red, green, blue, alpha};
    }
    static constexpr NSColor whiteColor() { return colorWithCalibratedWhite(1, 1); }
    static constexpr NSColor blackColor() { return colorWithCalibratedWhite(0, 1); }
    static constexpr NSColor clearColor() { return colorWithCalibratedWhite(0, 0); }

    constexpr Space space() const { return m_space; }
    /// The components as red, green and blue, whatever the space.
    constexpr double redComponent() const { return m_red; }
    constexpr double greenComponent() const { return m_green; }
    constexpr double blueComponent() const { return m_blue; }
    constexpr double alphaComponent() const { return m_alpha; }

    friend constexpr bool operator==(const NSColor&, const NSColor&) = default;

private:
    constexpr NSColor(Space space, double red, double green, double blue, double alpha)
        : m_space(space)
        , m_red(red)
        , m_green(green)
        , m_blue(blue)
        , m_alpha(alpha) { }

    Space m_space;
    double m_red;
    double m_green;
    double m_blue;
    double m_alpha;
};

} // namespace kw
