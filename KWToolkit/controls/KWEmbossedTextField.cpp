// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWEmbossedTextField.h>

namespace kw {

Class& KWEmbossedTextField::classObject() {
    static auto& object = *new Class("KWEmbossedTextField", NSTextField::classObject());
    return object;
}

NSRect KWEmbossedTextField::textRect() const { return {{2, 0}, bounds().size}; }

void KWEmbossedTextField::drawRect(NSGraphicsContext& context, NSRect) {
    const NSRect text = textRect();
    NSRect copy = text;
    copy.origin.y += 1;
    TextAttributes attributes {.font = font(),
        .color = NSColor::colorWithCalibratedWhite(1, 0.4),
        .paragraphStyle = {.alignment = alignment()}};
    context.drawTextInRect(stringValue(), copy, attributes);
    attributes.color = NSColor::colorWithCalibratedWhite(0.16, 1);
    context.drawTextInRect(stringValue(), text, attributes);
}

} // namespace kw
