// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSControl.h>
#include <KWToolkit/platform/ui/NSTextFieldCell.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kw {

class NSTextView;
struct NSNotification;

/// Posted through the default center with the field as the object.
inline constexpr const char* NSControlTextDidBeginEditingNotification =
    "NSControlTextDidBeginEditingNotification";
inline constexpr const char* NSControlTextDidChangeNotification =
    "NSControlTextDidChangeNotification";
inline constexpr const char* NSControlTextDidEndEditingNotification =
    "NSControlTextDidEndEditingNotification";

/// A line of text that the user may edit. It draws with its cell; while it is edited, the window's
/// field editor lies over its text. The Return key sends the action. Main thread.
class KW_EXPORT NSTextField : public NSControl {
public:
    explicit NSTextField(NSRect frame = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }
    bool isFlipped() const override { return true; }

    const std::shared_ptr<NSTextFieldCell>& cell() const { return m_cell; }
    /// Null is ignored. The cell is taken from the field that it belonged to, which must get
    /// another one.
    void setCell(std::shared_ptr<NSTextFieldCell> cell);

    // The cell's, with a redraw.
    const std::string& stringValue() const { return m_cell->stringValue(); }
    void setStringValue(std::string value);
    std::string placeholderString() const { return m_cell->placeholderString(); }
    void setPlaceholderString(std::string value);
    const NSFont& font() const { return m_cell->font(); }
    void setFont(NSFont font);
    NSColor textColor() const { return m_cell->textColor(); }
    void setTextColor(std::optional<NSColor> color);
    NSTextAlignment alignment() const { return m_cell->alignment(); }
    void setAlignment(NSTextAlignment alignment);
    bool isEditable() const { return m_cell->isEditable(); }
    /// Ends editing where it takes it away.
    void setEditable(bool editable);

    /// The field editor while it edits this field, else null.
    std::shared_ptr<NSTextView> currentEditor() const;
    /// Begins editing, if the field can be edited, and selects all of the text.
    void selectText();
    /// Where the text is drawn and edited, in the field's coordinates.
    virtual NSRect textRect() const { return bounds(); }

    // What the field editor tells.
    virtual void textDidBeginEditing(const NSNotification& notification);
    virtual void textDidChange(const NSNotification& notification);
    virtual void textDidEndEditing(const NSNotification& notification);

    void drawRect(NSGraphicsContext& context, NSRect rect) override;
    bool acceptsFirstResponder() const override { return isEnabled() && isEditable(); }
    bool becomeFirstResponder() override;
    void resizeSubviewsWithOldSize(NSSize oldSize) override;

    NSAccessibilityRole accessibilityRole() const override;
    /// The placeholder where no label is set.
    std::string accessibilityLabel() const override;
    std::string accessibilityValue() const override { return stringValue(); }
    bool setAccessibilityValue(const std::string& value) override;

private:
    void insertNewline(NSTextView& editor);
    void setUpEditor(NSTextView& editor);
    static void letGoOfEditor(NSTextView& editor);
    void changed();

    std::shared_ptr<NSTextFieldCell> m_cell;
};

} // namespace kw
