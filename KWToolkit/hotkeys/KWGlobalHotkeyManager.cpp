// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Unicode.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace kw {

namespace {

constexpr EventTypeSpec hotkeyPressed {kEventClassKeyboard, kEventHotKeyPressed};

std::uint32_t modifierMask(bool command, bool control, bool option, bool shift) {
    return (command ? hotkeyCommandMask : 0) + (control ? hotkeyControlMask : 0)
        + (option ? hotkeyOptionMask : 0) + (shift ? hotkeyShiftMask : 0);
}

std::uint16_t hotkeyKey(std::uint32_t keycode, std::uint32_t modifiers) {
    return static_cast<std::uint16_t>(keycode + modifiers);
}

} // namespace

Class& KWGlobalHotkeyManager::classObject() {
    static auto& object = *new Class("KWGlobalHotkeyManager", NSObject::classObject());
    return object;
}

KWGlobalHotkeyManager& KWGlobalHotkeyManager::hotkeyManager() {
    static auto& manager = (new KWGlobalHotkeyManager)->init();
    return manager;
}

KWGlobalHotkeyManager& KWGlobalHotkeyManager::init() {
    if (!std::exchange(m_hasInited, true))
        GetApplicationEventTarget().installEventHandler(KWHotKeyHandler, hotkeyPressed, nullptr);
    return *this;
}

void KWGlobalHotkeyManager::registerHotkey(std::uint32_t keycode, SEL action, WeakReference target,
    bool cmdModifier, bool controlModifier, bool optionModifier, bool shiftModifier) {
    const auto mask = modifierMask(cmdModifier, controlModifier, optionModifier, shiftModifier);
    const EventHotKeyRef handle = replaceCombination(keycode, mask, action);
    m_registeredHotkeys.insert_or_assign(hotkeyKey(keycode, mask),
        std::make_shared<KWHotkeyObject>(keycode, handle, std::move(target), action));
}

void KWGlobalHotkeyManager::registerHotkey(std::uint32_t keycode, NamedCallable action,
    bool cmdModifier, bool controlModifier, bool optionModifier, bool shiftModifier) {
    const SEL name(action.name);
    const auto mask = modifierMask(cmdModifier, controlModifier, optionModifier, shiftModifier);
    const EventHotKeyRef handle = replaceCombination(keycode, mask, name);
    m_registeredHotkeys.insert_or_assign(hotkeyKey(keycode, mask),
        std::make_shared<KWHotkeyObject>(keycode, handle, std::move(action.callable), name));
}

void KWGlobalHotkeyManager::registerHotkey(const Hotkey& hotkey, SEL action, WeakReference target) {
    if (hotkey.hasKey)
        registerHotkey(hotkey.keycode, action, std::move(target), hotkey.command, hotkey.control,
            hotkey.option, hotkey.shift);
}

void KWGlobalHotkeyManager::registerHotkey(const Hotkey& hotkey, NamedCallable action) {
    if (hotkey.hasKey)
        registerHotkey(hotkey.keycode, std::move(action), hotkey.command, hotkey.control,
            hotkey.option, hotkey.shift);
}

EventHotKeyRef KWGlobalHotkeyManager::replaceCombination(
    std::uint32_t keycode, std::uint32_t modifiers, SEL action) {
    HotkeyService& service = Platform::hotkeys();
    if (const auto former = m_registeredHotkeys.extract(hotkeyKey(keycode, modifiers)))
        service.unregisterEventHotKey(former.mapped()->eventHotKeyRef());
    const EventHotKeyID identifier {fourCharCodeToOSType(action.name()), keycode + modifiers};
    return service.registerEventHotKey(keycode, modifiers, identifier);
}

void KWGlobalHotkeyManager::unregisterHotkey(std::uint32_t keycode, bool cmdModifier,
    bool controlModifier, bool optionModifier, bool shiftModifier) {
    const auto mask = modifierMask(cmdModifier, controlModifier, optionModifier, shiftModifier);
    if (const auto former = m_registeredHotkeys.extract(hotkeyKey(keycode, mask)))
        Platform::hotkeys().unregisterEventHotKey(former.mapped()->eventHotKeyRef());
}

void KWGlobalHotkeyManager::unregisterHotkey(const Hotkey& hotkey) {
    if (hotkey.hasKey)
        unregisterHotkey(
            hotkey.keycode, hotkey.command, hotkey.control, hotkey.option, hotkey.shift);
}

std::optional<HotkeyStatus> KWGlobalHotkeyManager::statusOfHotkey(std::uint32_t keycode,
    bool cmdModifier, bool controlModifier, bool optionModifier, bool shiftModifier) const {
    const auto mask = modifierMask(cmdModifier, controlModifier, optionModifier, shiftModifier);
    const auto found = m_registeredHotkeys.find(hotkeyKey(keycode, mask));
    if (found == m_registeredHotkeys.end())
        return std::nullopt;
    return Platform::hotkeys().status(found->second->eventHotKeyRef());
}

std::optional<HotkeyStatus> KWGlobalHotkeyManager::statusOfHotkey(const Hotkey& hotkey) const {
    if (!hotkey.hasKey)
        return std::nullopt;
    return statusOfHotkey(
        hotkey.keycode, hotkey.command, hotkey.control, hotkey.option, hotkey.shift);
}

void KWGlobalHotkeyManager::setStatusChangeHandler(std::function<void()> handler) {
    Platform::hotkeys().setStatusChangeHandler(std::move(handler));
}

OSStatus KWHotKeyHandler(EventHandlerCallRef, EventRef event, void*) {
    EventHotKeyID identifier;
    GetEventParameter(
        event, kEventParamDirectObject, typeEventHotKeyID, sizeof identifier, &identifier);
    const auto& registrations = KWGlobalHotkeyManager::hotkeyManager().registeredHotkeys();
    const auto found = registrations.find(static_cast<std::uint16_t>(identifier.id));
    if (found != registrations.end()) {
        // Kept for the call: the action may replace or give back its own registration.
        const std::shared_ptr<KWHotkeyObject> registration = found->second;
        registration->performAction();
    }
    return noErr;
}

std::uint32_t fourCharCodeToOSType(std::string_view text) {
    const std::string bytes = macOSRoman(text).value_or(std::string());
    std::uint32_t code = 0;
    std::memcpy(&code, bytes.data(), std::min(bytes.size(), sizeof code));
    return code;
}

} // namespace kw
