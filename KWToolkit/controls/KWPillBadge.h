// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSNumber.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSFont.h>
#include <KWToolkit/platform/graphics/NSGradient.h>
#include <KWToolkit/platform/graphics/NSParagraphStyle.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace kw {

/// A pill with a short text in it, such as an unread count. At first it is red, with white text,
/// and without outline, shadow or text.
///
/// Deliberate: of all setters only `setBgGradient` asks for a redraw. Set what is to change, then
/// call `setNeedsDisplay`. Main thread.
class KW_EXPORT KWPillBadge : public NSView {
public:
    explicit KWPillBadge(NSRect frame = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Fills the pill where there is no gradient.
    void setBgColor(NSColor color) { m_bgColor = std::move(color); }
    void setTextColor(NSColor color) { m_textColor = std::move(color); }
    /// Without one the first drawing chooses, for good, a font 10 points smaller than the view is
    /// high.
    void setTextFont(std::optional<NSFont> font) { m_textFont = std::move(font); }
    void setCounterStringValue(std::string value) { m_counterValue = std::move(value); }
    /// The number as `stringValue` has it: 1000 is "1000".
    template <class Number>
        requires std::integral<Number> || std::floating_point<Number>
    void setCounterValue(Number number) {
        setCounterStringValue(stringValue(number));
    }
    void setBgGradient(std::optional<NSGradient> gradient);
    /// In degrees, as `NSGraphicsContext::drawGradient` takes them.
    void setBgGradientAngle(double angle) { m_bgGradientAngle = angle; }
    /// None draws no outline.
    void setStrokeColor(std::optional<NSColor> color) { m_strokeColor = std::move(color); }
    /// In points; an outline of 0 is as thin as the device can draw.
    void setStrokeSize(double width) { m_lineWidth = width; }
    /// A shadow needs both a color and a radius, in points. The pill shrinks to make room.
    void setShadowColor(std::optional<NSColor> color) { m_shadowColor = std::move(color); }
    void setShadowBlurRadius(double radius) { m_shadowBlurRadius = radius; }
    /// Moves the text from the middle, in points, y up.
    void setTextXoffset(std::int32_t xOffset, std::int32_t yOffset) {
        m_xOffset = xOffset;
        m_yOffset = yOffset;
    }

    void drawRect(NSGraphicsContext& context, NSRect rect) override;

    NSAccessibilityRole accessibilityRole() const override {
        return NSAccessibilityRole::staticText;
    }
    std::string accessibilityValue() const override { return m_counterValue; }

private:
    [[maybe_unused]] int m_counter = 0; // Deliberate: nothing reads it.
    std::string m_counterValue;
    NSParagraphStyle m_paraStyle {NSTextAlignmentCenter, NSLineBreakByTruncatingTail};
    NSColor m_textColor = NSColor::whiteColor();
    NSColor m_bgColor = NSColor::redColor();
    std::optional<NSColor> m_strokeColor;
    double m_lineWidth = 0;
    std::optional<NSFont> m_textFont;
    std::optional<NSColor> m_shadowColor;
    double m_shadowBlurRadius = 0;
    std::optional<NSGradient> m_bgGradient;
    double m_bgGradientAngle = 0;
    std::int32_t m_xOffset = 0;
    std::int32_t m_yOffset = 0;
};

} // namespace kw
