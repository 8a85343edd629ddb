// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWSeparatorView.h>

namespace kw {

namespace {

NSColor componentsOf(const NSColor& color) {
    return NSColor::colorWithDeviceRed(color.redComponent(), color.greenComponent(),
        color.blueComponent(), color.alphaComponent());
}

} // namespace

KWSeparatorView::KWSeparatorView(NSRect frame)
    : NSView(frame)
    , m_firstLineColor(grey(0.81))
    , m_secondLineColor(grey(0.92))
    , m_bgColor(grey(0.875)) { }

Class& KWSeparatorView::classObject() {
    static auto& object = *new Class("KWSeparatorView", NSView::classObject());
    return object;
}

void KWSeparatorView::drawRect(NSGraphicsContext& context, NSRect) {
    context.setFillColor(componentsOf(m_bgColor));
    context.fill(NSBezierPath::bezierPathWithRect(bounds()));

    context.setShouldAntialias(false);
    const auto strokeLine = [&](double y, const NSColor& color) {
        NSBezierPath line;
        line.moveToPoint({0, y});
        line.lineToPoint({bounds().size.width, y});
        line.setLineWidth(1);
        context.setStrokeColor(componentsOf(color));
        context.stroke(line);
    };
    strokeLine(bounds().size.height - 1, m_firstLineColor);
    strokeLine(bounds().size.height - 2, m_secondLineColor);
}

} // namespace kw
