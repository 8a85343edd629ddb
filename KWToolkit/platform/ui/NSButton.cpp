// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSButton.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>

#include <utility>

namespace kw {

Class& NSButton::classObject() {
    static auto& object = *new Class("NSButton", NSControl::classObject(), {},
        {
            property("title", &NSButton::title, &NSButton::setTitle),
            property("keyEquivalent", &NSButton::keyEquivalent, &NSButton::setKeyEquivalent),
        });
    return object;
}

void NSButton::setAttributedTitle(NSAttributedString title) {
    m_title = std::move(title);
    setNeedsPeerUpdate();
}

void NSButton::setKeyEquivalent(std::string key) {
    m_keyEquivalent = std::move(key);
    setNeedsPeerUpdate();
}

void NSButton::setBezelStyle(NSBezelStyle style) {
    m_bezelStyle = style;
    setNeedsPeerUpdate();
}

void NSButton::sizeToFit() {
    setFrame({frame().origin, Platform::textMetrics().sizeOfButton(m_title)});
}

void NSButton::performClick() {
    if (isEnabled())
        sendAction();
}

bool NSButton::performKeyEquivalent(const NSEvent& event) {
    constexpr std::uint32_t modifiers = NSEventModifierFlagShift | NSEventModifierFlagControl
        | NSEventModifierFlagOption | NSEventModifierFlagCommand;
    if (m_keyEquivalent.empty() || !isEnabled() || (event.modifierFlags & modifiers)
        || event.charactersIgnoringModifiers != m_keyEquivalent)
        return NSControl::performKeyEquivalent(event);
    performClick();
    return true;
}

std::string NSButton::accessibilityLabel() const {
    const std::string label = NSControl::accessibilityLabel();
    return label.empty() ? title() : label;
}

bool NSButton::accessibilityPerformPress() {
    performClick();
    return isEnabled();
}

} // namespace kw
