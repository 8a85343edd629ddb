// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/KWHotkeyView.h>

#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/hotkeys/NSEvent+ModifierKeys.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/platform/ui/NSWindow.h>

#include <utility>

namespace kw {

namespace {

constexpr float cornerRadius = 10;
constexpr float borderWidth = 4;
constexpr double engravingDepth = 2;

NSColor rgb(double red, double green, double blue, double alpha = 1) {
    return NSColor::colorWithCalibratedRed(red, green, blue, alpha);
}

NSGradient inactiveGradient() {
    return {
        {rgb(0.72, 0.78, 0.87), 0.0}, {rgb(0.5, 0.54, 0.6), 0.04}, {rgb(0.42, 0.47, 0.53), 0.8}};
}

// Deliberate: the inactive one with its last two colors exchanged.
NSGradient clickedGradient() {
    return {
        {rgb(0.72, 0.78, 0.87), 0.0}, {rgb(0.42, 0.47, 0.53), 0.04}, {rgb(0.5, 0.54, 0.6), 0.8}};
}

NSGradient activeGradient() {
    return {
        {rgb(0.73, 0.88, 0.34), 0.0}, {rgb(0.63, 0.77, 0.08), 0.03}, {rgb(0.5, 0.66, 0.0), 0.8}};
}

} // namespace

KWHotkeyView::KWHotkeyView(NSRect frame)
    : NSView(frame)
    , m_borderColor(rgb(0.13, 0.16, 0.2, 0.7))
    , m_inactiveButtomGradient(inactiveGradient())
    , m_clickedButtomGradient(clickedGradient())
    , m_activeButtomGradient(activeGradient())
    , m_currentButtomGradient(&m_inactiveButtomGradient) { }

Class& KWHotkeyView::classObject() {
    static auto& object = *new Class("KWHotkeyView", NSView::classObject());
    return object;
}

void KWHotkeyView::fillHotkeyDict(bool command, bool alternate, bool control, bool shift,
    std::uint16_t keycode, std::uint16_t hotkey) {
    if (!m_registeredHotkey)
        m_registeredHotkey = std::make_shared<HotkeyRecord>();
    fillHotkeyRecord(*m_registeredHotkey, command, alternate, control, shift, keycode, hotkey);
}

void KWHotkeyView::fillModifierHotkeyDict(bool command, bool alternate, bool control, bool shift) {
    if (!m_modifiersHotkey)
        m_modifiersHotkey = std::make_shared<HotkeyRecord>();
    fillModifierHotkeyRecord(*m_modifiersHotkey, command, alternate, control, shift);
}

void KWHotkeyView::setHotkey(const NSEvent& event) {
    const auto character = firstUnit(event.charactersIgnoringModifiers);
    if (!character)
        return;

    switch (*character) {
    case NSDeleteFunctionKey:
    case NSDeleteCharacter:
        setAcceptHotkey(false);
        tellDelegate(SEL("hotkeyViewRemovedHotkey:"));
        m_registeredHotkey = nullptr;
        m_currentButtomGradient = &m_inactiveButtomGradient;
        break;
    case NSEscapeCharacter:
        setAcceptHotkey(false);
        m_currentButtomGradient = &m_inactiveButtomGradient;
        tellDelegate(SEL("hotkeyViewUndoLastChanges:"));
        break;
    default:
        // Shift alone makes no hotkey.
        if (!isControlKeyDown(event) && !isOptionKeyDown(event) && !isCommandKeyDown(event))
            return;
        fillHotkeyDict(isCommandKeyDown(event), isOptionKeyDown(event), isControlKeyDown(event),
            isShiftKeyDown(event), event.keyCode, *character);
        setAcceptHotkey(false);
        m_currentButtomGradient = &m_inactiveButtomGradient;
        tellDelegate(SEL("hotkeyViewChangedHotkey:"));
    }
    setNeedsDisplay();
}

void KWHotkeyView::keyDown(const NSEvent& event) {
    // Deliberate: a key that is not taken is not passed on either.
    if (m_acceptHotkey)
        setHotkey(event);
}

bool KWHotkeyView::performKeyEquivalent(const NSEvent& event) {
    if (!m_acceptHotkey)
        return false;
    setHotkey(event);
    return true;
}

void KWHotkeyView::flagsChanged(const NSEvent& event) {
    if (m_acceptHotkey)
        fillModifierHotkeyDict(isCommandKeyDown(event), isOptionKeyDown(event),
            isControlKeyDown(event), isShiftKeyDown(event));
    setNeedsDisplay();
}

bool KWHotkeyView::resignFirstResponder() {
    setAcceptHotkey(false);
    m_currentButtomGradient = &m_inactiveButtomGradient;
    // Deliberate: sent whether or not the view was armed.
    tellDelegate(SEL("hotkeyViewUndoLastChanges:"));
    setNeedsDisplay();
    return true;
}

void KWHotkeyView::mouseDown(const NSEvent&) {
    if (m_acceptHotkey)
        return;
    m_currentButtomGradient = &m_clickedButtomGradient;
    m_modifiersHotkey = nullptr;
    tellDelegate(SEL("hotkeyViewWillChangeHotkey:"));
    setNeedsDisplay();
}

void KWHotkeyView::mouseUp(const NSEvent&) {
    // Deliberate: arms even where the press was elsewhere.
    m_currentButtomGradient = &m_activeButtomGradient;
    setAcceptHotkey(true);
    setNeedsDisplay();
}

void KWHotkeyView::drawRect(NSGraphicsContext& context, NSRect rect) {
    const NSBezierPath outline = roundBezierPath(rect, cornerRadius, borderWidth);
    context.drawGradient(*m_currentButtomGradient, outline, -90);
    context.setStrokeColor(m_borderColor);
    context.stroke(outline);

    const auto [text, fontSize] = textToDraw();
    m_currentFontSize = fontSize;
    const NSFont font = NSFont::boldSystemFontOfSize(m_currentFontSize);
    const TextAttributes face {font, NSColor::whiteColor(),
        NSShadow {.color = rgb(0.3, 0.3, 0.3), .offset = {0, 0}, .blurRadius = 3}};
    const TextAttributes engraving {font, rgb(0.11, 0.16, 0.23, 0.5), std::nullopt};

    const NSSize size = context.sizeOfText(text, face);
    const double x = rect.origin.x + rect.size.width * 0.5 - size.width * 0.5;
    const double y = rect.origin.y + rect.size.height * 0.5 - size.height * 0.5;
    context.drawText(text, {x, y - engravingDepth}, engraving);
    context.drawText(text, {x, y}, face);
}

KWHotkeyView::Text KWHotkeyView::textToDraw() const {
    if (!m_acceptHotkey && m_registeredHotkey)
        return {renderHotkeyDict(*m_registeredHotkey), m_bigFontSize};
    if (m_acceptHotkey && m_modifiersHotkey) {
        if (auto held = renderHotkeyDict(*m_modifiersHotkey); !held.empty())
            return {std::move(held), m_bigFontSize};
    }
    return {m_acceptHotkey ? "Type a hotkey" : "Click to set a hotkey", m_smallFontSize};
}

NSAccessibilityRole KWHotkeyView::accessibilityRole() const {
    return NSAccessibilityRole::hotkeyField;
}

std::string KWHotkeyView::accessibilityLabel() const {
    const std::string label = NSView::accessibilityLabel();
    return label.empty() ? "Hotkey" : label;
}

bool KWHotkeyView::accessibilityPerformPress() {
    if (NSWindow* const shownIn = window(); shownIn && !shownIn->makeFirstResponder(this))
        return false;
    mouseDown({});
    mouseUp({});
    return true;
}

void KWHotkeyView::setAcceptHotkey(bool accept) {
    m_acceptHotkey = accept;
    if (!accept)
        m_suspension.reset();
    else if (!m_suspension)
        m_suspension.emplace();
}

void KWHotkeyView::tellDelegate(SEL message) {
    const auto delegate = m_delegate.lock();
    if (delegate && delegate->respondsToSelector(message))
        send(*delegate, message, *this);
}

} // namespace kw
