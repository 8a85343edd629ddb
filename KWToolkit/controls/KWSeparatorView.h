// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSView.h>

namespace kw {

/// A light grey strip with two lines along its upper edge. Main thread.
class KW_EXPORT KWSeparatorView : public NSView {
public:
    explicit KWSeparatorView(NSRect frame = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void drawRect(NSGraphicsContext& context, NSRect rect) override;

protected:
    /// Opaque, of the calibrated RGB space.
    static NSColor grey(double level) {
        return NSColor::colorWithCalibratedRed(level, level, level, 1);
    }

    // Of an RGB space; a color of another makes drawing throw.
    NSColor m_firstLineColor; ///< of the upper line
    NSColor m_secondLineColor;
    NSColor m_bgColor;
};

} // namespace kw
