// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/NSWindow+SmartResize.h>

#include <algorithm>

namespace kw {

namespace {

double confined(double length, double smallest, double largest) {
    return static_cast<float>(std::min(largest, std::max(smallest, length)));
}

} // namespace

void resizeWindowToSize(NSWindow& window, NSSize size, bool animate) {
    const NSSize smallest = window.minSize();
    const NSSize largest = window.maxSize();
    const NSSize confinedSize {confined(size.width, smallest.width, largest.width),
        confined(size.height, smallest.height, largest.height)};
    const NSRect content = window.contentRectForFrameRect(window.frame());
    const NSRect resized =
        NSMakeRect(content.origin.x, content.origin.y + content.size.height - confinedSize.height,
            confinedSize.width, confinedSize.height);
    window.setFrame(window.frameRectForContentRect(resized), true, animate);
}

} // namespace kw
