// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSFont.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/graphics/NSParagraphStyle.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kw {

class NSView;

/// What a text field shows, and how: a field asks for a redraw where its cell does not. Main
/// thread.
class KW_EXPORT NSTextFieldCell : public NSObject {
public:
    explicit NSTextFieldCell(std::string text = {})
        : m_stringValue(std::move(text)) { }

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Called once the cell and the field that it is of have been loaded from a layout file.
    virtual void awakeFromNib() { }

    const std::string& stringValue() const { return m_stringValue; }
    void setStringValue(std::string value) { m_stringValue = std::move(value); }
    /// Shown while there is no value.
    const std::string& placeholderString() const { return m_placeholderString; }
    void setPlaceholderString(std::string value) { m_placeholderString = std::move(value); }
    const NSFont& font() const { return m_font; }
    void setFont(NSFont font) { m_font = std::move(font); }
    /// The theme's control text color until another is set.
    NSColor textColor() const;
    void setTextColor(std::optional<NSColor> color) { m_textColor = std::move(color); }
    NSTextAlignment alignment() const { return m_alignment; }
    void setAlignment(NSTextAlignment alignment) { m_alignment = alignment; }
    bool isEditable() const { return m_isEditable; }
    void setEditable(bool editable) { m_isEditable = editable; }
    bool drawsBackground() const { return m_drawsBackground; }
    void setDrawsBackground(bool draws) { m_drawsBackground = draws; }
    /// The theme's text background color until another is set.
    NSColor backgroundColor() const;
    void setBackgroundColor(std::optional<NSColor> color) { m_backgroundColor = std::move(color); }

    /// Whether the text is being edited in the field.
    bool showsFirstResponder() const;
    /// The field that the cell belongs to; null for none. A cell belongs to one field.
    std::shared_ptr<NSView> controlView() const;
    void setControlView(WeakReference view) { m_controlView = std::move(view); }

    /// Draws the background, then the interior.
    virtual void drawWithFrame(NSGraphicsContext& context, NSRect frame, NSView& view);
    /// Draws the text or the placeholder; nothing while the text is being edited.
    virtual void drawInteriorWithFrame(NSGraphicsContext& context, NSRect frame, NSView& view);

private:
    std::string m_stringValue;
    std::string m_placeholderString;
    NSFont m_font = NSFont::systemFontOfSize(NSFont::systemFontSize);
    std::optional<NSColor> m_textColor;
    std::optional<NSColor> m_backgroundColor;
    WeakReference m_controlView;
    NSTextAlignment m_alignment = NSTextAlignmentNatural;
    bool m_isEditable = true;
    bool m_drawsBackground = false;
};

} // namespace kw
