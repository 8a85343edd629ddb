// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/graphics/NSAttributedString.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <optional>
#include <string>
#include <utility>

namespace kw {

/// Posted by an `NSTextView` to its delegate as `textDidBeginEditing:` and so on, each message with
/// an `NSNotification` of the name here and the editor as its object.
inline constexpr const char* NSTextDidBeginEditingNotification =
    "NSTextDidBeginEditingNotification";
inline constexpr const char* NSTextDidChangeNotification = "NSTextDidChangeNotification";
inline constexpr const char* NSTextDidEndEditingNotification = "NSTextDidEndEditingNotification";

/// A line of text while it is edited: what is to be seen of it, and what has become of it. The
/// editor that the user works with is a native one of whoever shows the views; where there is none
/// nobody types. Main thread.
///
/// It answers to `delegate` by message as well.
class KW_EXPORT NSTextView : public NSView {
public:
    struct SelectedTextAttributes {
        std::optional<NSColor> backgroundColor; ///< none: the theme's
        std::optional<NSColor> foregroundColor;
        friend bool operator==(
            const SelectedTextAttributes&, const SelectedTextAttributes&) = default;
    };

    using NSView::NSView;

    static Class& classObject();
    Class& isa() const override { return classObject(); }
    bool isFlipped() const override { return true; }
    bool acceptsFirstResponder() const override { return true; }

    /// Who is told of editing; a text field that it works for. Not owned.
    std::shared_ptr<NSObject> delegate() const { return m_delegate.lock(); }
    void setDelegate(WeakReference delegate) { m_delegate = std::move(delegate); }

    const std::string& string() const { return m_string; }
    void setString(std::string string);
    /// The cursor is an empty range.
    NSRange selectedRange() const { return m_selectedRange; }
    /// What of it lies behind the text is ignored.
    void setSelectedRange(NSRange range);
    void selectAll() { setSelectedRange({0, m_string.size()}); }

    const NSFont& font() const { return m_font; }
    void setFont(NSFont font) { change(m_font, std::move(font)); }
    const NSColor& textColor() const { return m_textColor; }
    void setTextColor(NSColor color) { change(m_textColor, std::move(color)); }
    NSTextAlignment alignment() const { return m_alignment; }
    void setAlignment(NSTextAlignment alignment) { change(m_alignment, alignment); }
    const SelectedTextAttributes& selectedTextAttributes() const { return m_selected; }
    void setSelectedTextAttributes(SelectedTextAttributes attributes) {
        change(m_selected, std::move(attributes));
    }
    /// None: the text's.
    const std::optional<NSColor>& insertionPointColor() const { return m_insertionPointColor; }
    void setInsertionPointColor(std::optional<NSColor> color) {
        change(m_insertionPointColor, std::move(color));
    }

    /// For the native editor: the user has typed or selected. The first change of a text is told as
    /// the beginning of its editing.
    void userDidChange(std::string string, NSRange selection);
    void userDidSelect(NSRange selection) { m_selectedRange = selection; }
    /// For the native editor: the Return key.
    void insertNewline();

    bool becomeFirstResponder() override;
    /// Tells the delegate that editing has ended.
    bool resignFirstResponder() override;

    NSAccessibilityRole accessibilityRole() const override;

private:
    template <class T, class Value>
    void change(T& member, Value value) {
        if (member == value)
            return;
        member = std::move(value);
        setNeedsPeerUpdate();
    }
    void tellDelegate(SEL message, const char* name);

    WeakReference m_delegate;
    std::string m_string;
    NSRange m_selectedRange;
    NSFont m_font;
    NSColor m_textColor = NSColor::blackColor();
    NSTextAlignment m_alignment = NSTextAlignmentNatural;
    SelectedTextAttributes m_selected;
    std::optional<NSColor> m_insertionPointColor;
    bool m_isBegun = false;
};

} // namespace kw
