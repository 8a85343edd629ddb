// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSTextField.h>

#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

NSTextField::NSTextField(NSRect frame)
    : NSControl(frame)
    , m_cell(std::make_shared<NSTextFieldCell>()) {
    m_cell->setControlView(*this);
}

Class& NSTextField::classObject() {
    static auto& object = *new Class("NSTextField", NSControl::classObject(),
        {
            method("textDidBeginEditing:", &NSTextField::textDidBeginEditing),
            method("textDidChange:", &NSTextField::textDidChange),
            method("textDidEndEditing:", &NSTextField::textDidEndEditing),
            method("insertNewline:", &NSTextField::insertNewline),
        },
        {
            property("stringValue", &NSTextField::stringValue, &NSTextField::setStringValue),
            property("placeholderString", &NSTextField::placeholderString,
                &NSTextField::setPlaceholderString),
            property("font", &NSTextField::font, &NSTextField::setFont),
            property("textColor", &NSTextField::textColor, &NSTextField::setTextColor),
            property("alignment", &NSTextField::alignment, &NSTextField::setAlignment),
            property("editable", &NSTextField::isEditable, &NSTextField::setEditable),
        });
    return object;
}

void NSTextField::setCell(std::shared_ptr<NSTextFieldCell> cell) {
    if (!cell || cell == m_cell)
        return;
    if (m_cell->controlView().get() == this)
        m_cell->setControlView(nullptr);
    m_cell = std::move(cell);
    m_cell->setControlView(*this);
    changed();
}

void NSTextField::setStringValue(std::string value) {
    m_cell->setStringValue(std::move(value));
    changed();
}

void NSTextField::setPlaceholderString(std::string value) {
    m_cell->setPlaceholderString(std::move(value));
    changed();
}

void NSTextField::setFont(NSFont font) {
    m_cell->setFont(std::move(font));
    changed();
}

void NSTextField::setTextColor(std::optional<NSColor> color) {
    m_cell->setTextColor(std::move(color));
    changed();
}

void NSTextField::setAlignment(NSTextAlignment alignment) {
    m_cell->setAlignment(alignment);
    changed();
}

void NSTextField::setEditable(bool editable) {
    m_cell->setEditable(editable);
    changed();
}

void NSTextField::changed() {
    if (const auto editor = currentEditor())
        setUpEditor(*editor);
    setNeedsDisplay();
    // Last: whoever is told may let go of the field.
    if (!acceptsFirstResponder())
        giveUpFirstResponder();
}

std::shared_ptr<NSTextView> NSTextField::currentEditor() const {
    NSWindow* const shownIn = window();
    const auto editor = shownIn ? shownIn->fieldEditor(false, this) : nullptr;
    return editor && editor->superview() == this ? editor : nullptr;
}

void NSTextField::setUpEditor(NSTextView& editor) {
    editor.setFrame(textRect());
    editor.setString(stringValue());
    editor.setFont(font());
    editor.setTextColor(textColor());
    editor.setAlignment(alignment());
    editor.setAccessibilityLabel(accessibilityLabel());
}

void NSTextField::selectText() {
    NSWindow* const shownIn = window();
    if (!shownIn || !acceptsFirstResponder())
        return;
    const auto alive = weak_from_this().lock();
    const auto editor = shownIn->fieldEditor(true, this);
    if (editor->superview() != this) {
        editor->resignFirstResponder(); // ends what it edits
        // Whoever was told may have taken it back, or this field away.
        if (editor->superview() || window() != shownIn)
            return;
        editor->setSelectedTextAttributes({});
        editor->setInsertionPointColor({});
        editor->setDelegate(*this);
        setUpEditor(*editor);
        addSubview(editor);
    }
    editor->selectAll();
    shownIn->makeFirstResponder(editor.get());
    // Somebody may keep the keyboard.
    if (window() == shownIn && &shownIn->firstResponder() != editor.get()
        && editor->superview() == this)
        letGoOfEditor(*editor);
    setNeedsDisplay();
}

bool NSTextField::becomeFirstResponder() {
    selectText();
    return true;
}

void NSTextField::textDidBeginEditing(const NSNotification&) {
    NSNotificationCenter::defaultCenter().postNotificationName(
        NSControlTextDidBeginEditingNotification, this);
}

void NSTextField::textDidChange(const NSNotification&) {
    if (const auto editor = currentEditor())
        m_cell->setStringValue(editor->string());
    setNeedsDisplay();
    NSNotificationCenter::defaultCenter().postNotificationName(
        NSControlTextDidChangeNotification, this);
}

void NSTextField::textDidEndEditing(const NSNotification&) {
    if (const auto editor = currentEditor())
        letGoOfEditor(*editor);
    setNeedsDisplay();
    NSNotificationCenter::defaultCenter().postNotificationName(
        NSControlTextDidEndEditingNotification, this);
}

void NSTextField::letGoOfEditor(NSTextView& editor) {
    editor.setDelegate(nullptr);
    editor.removeFromSuperview();
}

void NSTextField::insertNewline(NSTextView& editor) {
    editor.selectAll();
    sendAction();
}

void NSTextField::drawRect(NSGraphicsContext& context, NSRect) {
    m_cell->drawWithFrame(context, bounds(), *this);
}

void NSTextField::resizeSubviewsWithOldSize(NSSize oldSize) {
    NSControl::resizeSubviewsWithOldSize(oldSize);
    if (const auto editor = currentEditor())
        editor->setFrame(textRect());
}

NSAccessibilityRole NSTextField::accessibilityRole() const {
    return isEditable() ? NSAccessibilityRole::textField : NSAccessibilityRole::staticText;
}

std::string NSTextField::accessibilityLabel() const {
    const std::string label = NSControl::accessibilityLabel();
    return label.empty() ? placeholderString() : label;
}

bool NSTextField::setAccessibilityValue(const std::string& value) {
    if (!acceptsFirstResponder())
        return false;
    setStringValue(value);
    return true;
}

} // namespace kw
