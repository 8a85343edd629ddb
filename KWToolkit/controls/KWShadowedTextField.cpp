// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWShadowedTextField.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSCursor.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

namespace {

constexpr double highlightRadius = 4;

} // namespace

Class& KWShadowedTextField::classObject() {
    using Field = KWShadowedTextField;
    static auto& object = *new Class("KWShadowedTextField", NSTextField::classObject(), {},
        {
            property("shadowColor", &Field::shadowColor, &Field::setShadowColor),
            property("xOffset", &Field::xOffset, &Field::setXOffset),
            property("yOffset", &Field::yOffset, &Field::setYOffset),
            property("subpixelAntiAliasing", &Field::subpixelAntiAliasing,
                &Field::setSubpixelAntiAliasing),
            property("hoverColor", &Field::hoverColor, &Field::setHoverColor),
            property("padding", &Field::padding, &Field::setPadding),
        });
    return object;
}

// Deliberate: the base class is not told.
void KWShadowedTextField::awakeFromNib() {
    setShadowColor(NSColor::colorWithCalibratedWhite(1, 0.4));
    setYOffset(1);
    setXOffset(0);
    setSubpixelAntiAliasing(false);
    setPadding({0, 0});
}

void KWShadowedTextField::setHighlightHoverWithColor(std::optional<NSColor> color) {
    setHoverColor(std::move(color));
    addHoverTrackingArea();
}

void KWShadowedTextField::addHoverTrackingArea() {
    setHoverTrackingArea(std::make_shared<NSTrackingArea>(bounds(),
        NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveInKeyWindow,
        *this));
    addTrackingArea(m_hoverTrackingArea);
}

void KWShadowedTextField::updateTrackingAreas() {
    NSTextField::updateTrackingAreas();
    if (!m_hoverTrackingArea)
        return;
    removeTrackingArea(m_hoverTrackingArea);
    addHoverTrackingArea();
}

void KWShadowedTextField::mouseEntered(const NSEvent&) {
    (isEditable() ? NSCursor::IBeamCursor() : NSCursor::arrowCursor()).set();
    m_shouldDrawHighlightHover = true;
    setNeedsDisplay();
}

void KWShadowedTextField::mouseExited(const NSEvent&) {
    NSCursor::arrowCursor().set();
    m_shouldDrawHighlightHover = false;
    setNeedsDisplay();
}

bool KWShadowedTextField::isEditing() const {
    NSWindow* const shownIn = window();
    if (!shownIn)
        return false;
    NSResponder& first = shownIn->firstResponder();
    return first.respondsToSelector(SEL("delegate"))
        && send<std::shared_ptr<NSObject>>(first, SEL("delegate")).get() == this;
}

void KWShadowedTextField::textDidChange(const NSNotification& notification) {
    NSTextField::textDidChange(notification);
    sizeWidthToFit();
}

NSSize KWShadowedTextField::drawnStringSize() const {
    return Platform::textMetrics().sizeOfText(stringValue(), {.font = font()});
}

void KWShadowedTextField::sizeWidthToFit() {
    NSRect fitted = frame();
    fitted.size.width = drawnStringSize().width + 2 * m_padding.width;
    setFrame(fitted);
}

// Moved, not shrunk.
NSRect KWShadowedTextField::textRect() const {
    return {{m_padding.width, m_padding.height}, bounds().size};
}

NSBezierPath KWShadowedTextField::highlightShape() const {
    NSRect shape = bounds();
    shape.size.width = drawnStringSize().width + 2 * m_padding.width;
    return NSBezierPath::bezierPathWithRoundedRect(shape, highlightRadius, highlightRadius);
}

void KWShadowedTextField::drawRect(NSGraphicsContext& context, NSRect) {
    if (isEditing()) {
        if (m_hoverColor) {
            context.setFillColor(*m_hoverColor);
            context.fill(highlightShape());
        }
        return; // the field editor shows the text
    }
    if (m_shouldDrawHighlightHover && isEditable() && m_hoverColor) {
        const NSBezierPath shape = highlightShape();
        context.setFillColor(*m_hoverColor);
        context.fill(shape);
    }

    const NSRect text = textRect();
    TextAttributes attributes {
        .font = font(), .paragraphStyle = {alignment(), NSLineBreakByTruncatingTail}};
    context.setShouldSmoothFonts(m_subpixelAntiAliasing);
    if (m_shadowColor) {
        attributes.color = *m_shadowColor;
        const NSPoint shifted {
            text.origin.x + double {m_xOffset}, text.origin.y + double {m_yOffset}};
        context.drawTextInRect(stringValue(), {shifted, text.size}, attributes);
    }
    attributes.color = textColor();
    if (!stringValue().empty()) {
        context.drawTextInRect(stringValue(), text, attributes);
    } else {
        // Deliberate: without a copy of its own.
        attributes.color = attributes.color.colorWithAlphaComponent(0.5);
        context.drawTextInRect(placeholderString(), text, attributes);
    }
}

} // namespace kw
