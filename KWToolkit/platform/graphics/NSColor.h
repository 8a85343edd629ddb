// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGColor.h>
#include <KWToolkit/platform/graphics/CGColorSpace.h>

#include <array>
#include <memory>
#include <optional>
#include <span>

namespace kw {

class NSImage;

/// A color: the components of a space and an alpha, from 0 to 1, or an image that is painted side
/// by side. What is outside of 0 to 1 counts as the nearer of the two, what is no number as 0.
class KW_EXPORT NSColor {
public:
    static NSColor colorWithCalibratedWhite(double white, double alpha) {
        return {CGColorSpace::calibratedGray, {white}, alpha};
    }
    static NSColor colorWithCalibratedRed(double red, double green, double blue, double alpha) {
        return {CGColorSpace::calibratedRGB, {red, green, blue}, alpha};
    }
    static NSColor colorWithDeviceWhite(double white, double alpha) {
        return {CGColorSpace::deviceGray, {white}, alpha};
    }
    static NSColor colorWithDeviceRed(double red, double green, double blue, double alpha) {
        return {CGColorSpace::deviceRGB, {red, green, blue}, alpha};
    }
    static NSColor colorWithDeviceCyan(
        double cyan, double magenta, double yellow, double black, double alpha) {
        return {CGColorSpace::deviceCMYK, {cyan, magenta, yellow, black}, alpha};
    }
    static NSColor colorWithPatternImage(std::shared_ptr<NSImage> image);
    /// In the device's space of the color's kind; empty for a pattern.
    static std::optional<NSColor> colorWithCGColor(const kw::CGColor& color);
    static NSColor whiteColor() { return colorWithCalibratedWhite(1, 1); }
    static NSColor blackColor() { return colorWithCalibratedWhite(0, 1); }
    static NSColor darkGrayColor() { return colorWithCalibratedWhite(1.0 / 3, 1); }
    static NSColor redColor() { return colorWithCalibratedRed(1, 0, 0, 1); }
    // The theme's, as they are now.
    static NSColor controlTextColor();
    static NSColor textBackgroundColor();
    static NSColor clearColor() { return colorWithCalibratedWhite(0, 0); }

    CGColorSpace colorSpace() const { return m_space; }
    double alphaComponent() const { return m_alpha; }
    NSColor colorWithAlphaComponent(double alpha) const;

    // Each of these throws an `NSException` named "NSInvalidArgumentException" for a color of
    // another kind than the name says.
    double whiteComponent() const;
    double redComponent() const;
    double greenComponent() const;
    double blueComponent() const;
    std::shared_ptr<NSImage> patternImage() const;
    /// With alpha. There are none in a pattern.
    int numberOfComponents() const;
    /// Alpha last. Writes as many as there are, or as there is room for.
    void getComponents(std::span<double> components) const;

    /// The color in another space, by the formulas of PostScript (Language Reference, 3rd edition,
    /// 7.2); empty from a pattern or to one.
    std::optional<NSColor> colorUsingColorSpace(CGColorSpace space) const;

    /// The color for layers and contexts. That of an image keeps the image's pixels alive; empty
    /// where the image has none.
    std::optional<kw::CGColor> CGColor() const;

    friend bool operator==(const NSColor&, const NSColor&) = default;

private:
    using Components = std::array<double, 4>;

    NSColor(CGColorSpace space, const Components& components, double alpha);
    double component(const char* name, CGColorSpaceModel model, std::size_t index) const;
    [[noreturn]] void throwInvalid(const char* name) const;

    CGColorSpace m_space;
    Components m_components;
    double m_alpha;
    std::shared_ptr<NSImage> m_pattern;
};

} // namespace kw
