// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSTextFieldCell.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/NSTextField.h>

namespace kw {

Class& NSTextFieldCell::classObject() {
    static auto& object = *new Class("NSTextFieldCell", NSObject::classObject());
    return object;
}

NSColor NSTextFieldCell::textColor() const {
    return m_textColor ? *m_textColor : NSColor::controlTextColor();
}

NSColor NSTextFieldCell::backgroundColor() const {
    return m_backgroundColor ? *m_backgroundColor : NSColor::textBackgroundColor();
}

bool NSTextFieldCell::showsFirstResponder() const {
    const auto field = std::dynamic_pointer_cast<NSTextField>(controlView());
    return field && field->currentEditor();
}

std::shared_ptr<NSView> NSTextFieldCell::controlView() const {
    return std::dynamic_pointer_cast<NSView>(m_controlView.lock());
}

void NSTextFieldCell::drawWithFrame(NSGraphicsContext& context, NSRect frame, NSView& view) {
    if (m_drawsBackground) {
        context.setFillColor(backgroundColor());
        context.fill(NSBezierPath::bezierPathWithRect(frame));
    }
    drawInteriorWithFrame(context, frame, view);
}

void NSTextFieldCell::drawInteriorWithFrame(NSGraphicsContext& context, NSRect frame, NSView&) {
    const bool isPlaceholder = m_stringValue.empty();
    const std::string& text = isPlaceholder ? m_placeholderString : m_stringValue;
    if (showsFirstResponder() || text.empty())
        return;
    const NSColor color = textColor();
    context.drawTextInRect(text, frame,
        {.font = m_font,
            .color = isPlaceholder ? color.colorWithAlphaComponent(0.5) : color,
            .paragraphStyle = {m_alignment, NSLineBreakByTruncatingTail}});
}

} // namespace kw
