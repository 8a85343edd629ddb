// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWPillBadge.h>

#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>

namespace kw {

KWPillBadge::KWPillBadge(NSRect frame)
    : NSView(frame) { }

Class& KWPillBadge::classObject() {
    // For layout files.
    static auto& object = *new Class("KWPillBadge", NSView::classObject(), {},
        {
            property("counterValue", &KWPillBadge::m_counterValue),
            property("textColor", &KWPillBadge::m_textColor),
            property("bgColor", &KWPillBadge::m_bgColor),
            property("strokeColor", &KWPillBadge::m_strokeColor),
            property("lineWidth", &KWPillBadge::m_lineWidth),
            property("textFont", &KWPillBadge::m_textFont),
            property("shadowColor", &KWPillBadge::m_shadowColor),
            property("shadowBlurRadius", &KWPillBadge::m_shadowBlurRadius),
            property("xOffset", &KWPillBadge::m_xOffset),
            property("yOffset", &KWPillBadge::m_yOffset),
        });
    return object;
}

void KWPillBadge::setBgGradient(std::optional<NSGradient> gradient) {
    m_bgGradient = std::move(gradient);
    setNeedsDisplay();
}

void KWPillBadge::drawRect(NSGraphicsContext& context, NSRect) {
    context.saveGraphicsState();
    const NSSize whole = bounds().size;
    NSRect pill = bounds();
    if (m_shadowColor && m_shadowBlurRadius != 0) {
        context.setShadow(
            {.color = *m_shadowColor, .offset = {}, .blurRadius = m_shadowBlurRadius});
        pill = NSInsetRect(pill, m_shadowBlurRadius, m_shadowBlurRadius);
    }
    if (m_lineWidth != 0 && m_strokeColor)
        pill = NSInsetRect(pill, m_lineWidth, m_lineWidth);
    NSBezierPath outline = roundBezierPath(pill, static_cast<float>(pill.size.height * 0.5), 1.0F);
    if (m_bgGradient) {
        context.drawGradient(*m_bgGradient, outline, m_bgGradientAngle);
    } else {
        context.setFillColor(m_bgColor);
        context.fill(outline);
    }
    context.restoreGraphicsState();

    // Deliberate: whatever the width is, 0 included.
    if (m_strokeColor) {
        context.setStrokeColor(*m_strokeColor);
        outline.setLineWidth(m_lineWidth);
        context.stroke(outline);
    }

    if (!m_textFont)
        m_textFont = NSFont::fontWithName("Lucida Grande", whole.height - 10);
    const TextAttributes attributes {
        .font = *m_textFont, .color = m_textColor, .paragraphStyle = m_paraStyle};
    const NSSize text = context.sizeOfText(m_counterValue, attributes);
    // At a point, so that a text wider than the pill is whole.
    context.drawText(m_counterValue,
        {(whole.width - text.width) * 0.5 + m_xOffset,
            (whole.height - text.height) * 0.5 + m_yOffset},
        attributes);
}

} // namespace kw
