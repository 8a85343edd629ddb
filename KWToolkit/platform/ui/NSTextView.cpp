// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSTextView.h>

#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>

#include <algorithm>

namespace kw {

Class& NSTextView::classObject() {
    static auto& object = *new Class("NSTextView", NSView::classObject(),
        {
            method("delegate", &NSTextView::delegate),
        });
    return object;
}

void NSTextView::setString(std::string string) {
    change(m_string, std::move(string));
    setSelectedRange(m_selectedRange);
}

void NSTextView::setSelectedRange(NSRange range) {
    const std::size_t location = std::min(range.location, m_string.size());
    change(m_selectedRange, NSRange {location, std::min(range.length, m_string.size() - location)});
}

void NSTextView::userDidChange(std::string string, NSRange selection) {
    m_selectedRange = selection;
    if (m_string == string)
        return;
    m_string = std::move(string);
    if (!std::exchange(m_isBegun, true))
        tellDelegate(SEL("textDidBeginEditing:"), NSTextDidBeginEditingNotification);
    tellDelegate(SEL("textDidChange:"), NSTextDidChangeNotification);
}

void NSTextView::insertNewline() {
    if (const auto told = delegate(); told && told->respondsToSelector(SEL("insertNewline:")))
        send(*told, SEL("insertNewline:"), *this);
}

bool NSTextView::becomeFirstResponder() {
    m_isBegun = false;
    return true;
}

bool NSTextView::resignFirstResponder() {
    tellDelegate(SEL("textDidEndEditing:"), NSTextDidEndEditingNotification);
    return true;
}

NSAccessibilityRole NSTextView::accessibilityRole() const { return NSAccessibilityRole::textField; }

void NSTextView::tellDelegate(SEL message, const char* name) {
    const auto told = delegate();
    if (told && told->respondsToSelector(message))
        send(*told, message, NSNotification {name, this});
}

} // namespace kw
