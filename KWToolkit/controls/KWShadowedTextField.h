// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSTextField.h>
#include <KWToolkit/platform/ui/NSTrackingArea.h>

#include <memory>
#include <optional>
#include <utility>

namespace kw {

/// A text field that draws its text over a shifted copy of it, engraved or embossed, highlights
/// itself under the mouse, and is as wide as its text while the user types.
///
/// One that is made in code has neither shadow nor padding nor highlight; `awakeFromNib` sets what
/// one from a layout file begins with. Deliberate: no setter of its own asks for a redraw. Main
/// thread.
class KW_EXPORT KWShadowedTextField : public NSTextField {
public:
    using NSTextField::NSTextField;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The color of the copy; none draws no copy.
    const std::optional<NSColor>& shadowColor() const { return m_shadowColor; }
    void setShadowColor(std::optional<NSColor> color) { m_shadowColor = std::move(color); }
    /// Where the copy is, in points from the text, y down.
    float xOffset() const { return m_xOffset; }
    void setXOffset(float offset) { m_xOffset = offset; }
    float yOffset() const { return m_yOffset; }
    void setYOffset(float offset) { m_yOffset = offset; }
    /// Whether the text is smoothed by subpixels.
    bool subpixelAntiAliasing() const { return m_subpixelAntiAliasing; }
    void setSubpixelAntiAliasing(bool smooth) { m_subpixelAntiAliasing = smooth; }
    /// None draws no highlight. `setHighlightHoverWithColor` also makes it follow the mouse.
    const std::optional<NSColor>& hoverColor() const { return m_hoverColor; }
    void setHoverColor(std::optional<NSColor> color) { m_hoverColor = std::move(color); }
    const std::shared_ptr<NSTrackingArea>& hoverTrackingArea() const { return m_hoverTrackingArea; }
    void setHoverTrackingArea(std::shared_ptr<NSTrackingArea> area) {
        m_hoverTrackingArea = std::move(area);
    }
    /// What the text keeps from the field's upper left corner, and its width from the right edge.
    NSSize padding() const { return m_padding; }
    void setPadding(NSSize padding) { m_padding = padding; }

    /// A white copy at 40 per cent, one point below the text; no padding.
    void awakeFromNib() override;

    /// Highlights the field while the mouse is in it. Deliberate: each call adds an area, of which
    /// only the last is kept up to date.
    void setHighlightHoverWithColor(std::optional<NSColor> color);
    void updateTrackingAreas() override;
    void mouseEntered(const NSEvent& event) override;
    void mouseExited(const NSEvent& event) override;

    /// Whether the window's field editor works for this field.
    bool isEditing() const;
    void textDidChange(const NSNotification& notification) override;
    /// What the value covers in the field's font.
    NSSize drawnStringSize() const;
    /// Makes the field as wide as its value and the padding on both sides.
    void sizeWidthToFit();

    NSRect textRect() const override;
    void drawRect(NSGraphicsContext& context, NSRect rect) override;

private:
    void addHoverTrackingArea();
    NSBezierPath highlightShape() const;

    std::optional<NSColor> m_shadowColor;
    float m_xOffset = 0;
    float m_yOffset = 0;
    bool m_subpixelAntiAliasing = false;
    std::optional<NSColor> m_hoverColor;
    std::shared_ptr<NSTrackingArea> m_hoverTrackingArea;
    bool m_shouldDrawHighlightHover = false;
    NSSize m_padding;
};

} // namespace kw
