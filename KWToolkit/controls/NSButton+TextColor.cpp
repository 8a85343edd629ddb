// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSButton+TextColor.h>

namespace kw {

std::optional<NSColor> textColor(const NSButton& button) {
    const auto attributes = button.attributedTitle().attributesAtIndex(0);
    return attributes.isEmpty() ? NSColor::controlTextColor() : attributes.foregroundColor;
}

void setTextColor(NSButton& button, const std::optional<NSColor>& color) {
    NSAttributedString title = button.attributedTitle();
    title.setForegroundColor(color, title.wholeRange());
    title.fixAttributesInRange(title.wholeRange());
    button.setAttributedTitle(std::move(title));
}

} // namespace kw
