// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSTextFieldCell.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kw {

/// A text field cell on a rounded, translucent background. Each time it draws, it colors the
/// window's field editor, selection and insertion point, by whether the window is key.
///
/// There are no setters: a subclass writes the fields, or `setValueForKey` with the fields' names
/// ("borderColor"). Main thread.
class KW_EXPORT KWTextFieldCell : public NSTextFieldCell {
public:
    explicit KWTextFieldCell(std::string text = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Sets all fields to what they were at first, whatever the layout file said.
    void awakeFromNib() override;
    void drawWithFrame(NSGraphicsContext& context, NSRect frame, NSView& view) override;

protected:
    NSColor m_selectionColor = NSColor::darkGrayColor(); ///< of the key window
    NSColor m_altBgColor = NSColor::colorWithCalibratedWhite(1, 0.2);
    std::optional<NSColor> m_borderColor; ///< none draws no border
    NSColor m_insertionPointColor = NSColor::whiteColor(); ///< Deliberate: nothing reads it.
    std::optional<NSColor> m_inactiveInsertionPointColor; ///< none leaves it as it is
    std::optional<NSColor> m_inactiveSelectionColor; ///< none leaves it as it is
    std::int32_t m_cornerRadius = 4; ///< in points
    std::int32_t m_borderSize = 1; ///< in points; below 1 draws no border
};

} // namespace kw
