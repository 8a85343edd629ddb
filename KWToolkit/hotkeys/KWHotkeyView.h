// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/hotkeys/HotkeyRecord.h>
#include <KWToolkit/hotkeys/HotkeySuspension.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/graphics/NSGradient.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <memory>
#include <optional>
#include <string>

namespace kw {

/// A key cap in which the user records a hotkey: a click arms it, the next key pressed together
/// with Command, Option or Control becomes the hotkey, Escape cancels, Delete and forward delete
/// clear.
///
/// The delegate is told of each step by messages with the view as their argument, each sent only if
/// the delegate answers to it:
///
/// - `hotkeyViewWillChangeHotkey:` recording is about to begin;
/// - `hotkeyViewChangedHotkey:` a new hotkey is in `registeredHotkey`;
/// - `hotkeyViewUndoLastChanges:` recording was cancelled, or the keyboard focus was lost, armed or
///   not;
/// - `hotkeyViewRemovedHotkey:` the user cleared the hotkey (sent before the record is dropped).
///
/// The view registers nothing. While it is armed the process's own hotkeys are suspended, so that a
/// combination that is registered can be recorded again. Main thread.
class KW_EXPORT KWHotkeyView : public NSView {
public:
    explicit KWHotkeyView(NSRect frame = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The recorded hotkey, null for none. Setting it tells no delegate and asks for no redraw.
    const std::shared_ptr<HotkeyRecord>& registeredHotkey() const { return m_registeredHotkey; }
    void setRegisteredHotkey(std::shared_ptr<HotkeyRecord> hotkey) {
        m_registeredHotkey = std::move(hotkey);
    }

    /// The modifiers held since the last mouse press; null before the first change.
    const std::shared_ptr<HotkeyRecord>& modifiersHotkey() const { return m_modifiersHotkey; }

    /// Not owned.
    std::shared_ptr<NSObject> delegate() const { return m_delegate.lock(); }
    void setDelegate(WeakReference delegate) { m_delegate = std::move(delegate); }

    /// Whether the view is armed and waits for a hotkey.
    bool acceptHotkey() const { return m_acceptHotkey; }

    /// The gradient drawn now: at rest, with the mouse button down, or armed.
    const NSGradient& currentButtomGradient() const { return *m_currentButtomGradient; }
    /// The size of the text drawn last.
    float currentFontSize() const { return m_currentFontSize; }

    /// Sets the full record's six entries; makes the record if there is none.
    void fillHotkeyDict(bool command, bool alternate, bool control, bool shift,
        std::uint16_t keycode, std::uint16_t hotkey);
    /// Sets the modifier record's four entries; makes the record if there is none.
    void fillModifierHotkeyDict(bool command, bool alternate, bool control, bool shift);
    std::string renderHotkeyDict(const HotkeyRecord& record) const {
        return renderHotkeyRecord(record);
    }
    char16_t unicharFromKeycode(std::uint16_t keycode) const {
        return kw::unicharFromKeycode(keycode);
    }

    /// The recording step. A key without characters (a dead key) is ignored.
    void setHotkey(const NSEvent& event);

    /// Draws the outline and the text centered on `rect`, whatever the bounds are.
    void drawRect(NSGraphicsContext& context, NSRect rect) override;
    void keyDown(const NSEvent& event) override;
    bool performKeyEquivalent(const NSEvent& event) override;
    void flagsChanged(const NSEvent& event) override;
    void mouseDown(const NSEvent& event) override;
    void mouseUp(const NSEvent& event) override;
    bool acceptsFirstMouse(const NSEvent&) override { return true; }
    bool acceptsFirstResponder() const override { return true; }
    bool resignFirstResponder() override;

    NSAccessibilityRole accessibilityRole() const override;
    /// "Hotkey" where no label is set.
    std::string accessibilityLabel() const override;
    std::string accessibilityValue() const override { return textToDraw().text; }
    bool isAccessibilityPressed() const override { return m_acceptHotkey; }
    /// Arms the view, unless it cannot have the keyboard: it would wait for keys in vain.
    bool accessibilityPerformPress() override;

private:
    struct Text {
        std::string text;
        float fontSize;
    };
    void setAcceptHotkey(bool accept);
    void tellDelegate(SEL message);
    Text textToDraw() const;

    WeakReference m_delegate;
    bool m_acceptHotkey = false;
    std::shared_ptr<HotkeyRecord> m_registeredHotkey;
    std::shared_ptr<HotkeyRecord> m_modifiersHotkey;
    NSColor m_borderColor;
    NSGradient m_inactiveButtomGradient;
    NSGradient m_clickedButtomGradient;
    NSGradient m_activeButtomGradient;
    const NSGradient* m_currentButtomGradient; // one of the three
    float m_currentFontSize = 14;
    float m_bigFontSize = 20; // a rendered hotkey
    float m_smallFontSize = 14; // the prompts
    std::optional<HotkeySuspension> m_suspension; // while armed
};

} // namespace kw
