// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>

#include <algorithm>

namespace kw {

namespace {

constexpr std::uint32_t largestKeyCode = 255;
constexpr std::uint32_t knownModifiers =
    hotkeyCommandMask | hotkeyShiftMask | hotkeyOptionMask | hotkeyControlMask;

} // namespace

HotkeyCapabilities HeadlessHotkeyService::capabilities() const {
    return {.isAvailable = m_isAvailable, .reportsConflicts = true, .choosesKeys = true};
}

EventHotKeyRef HeadlessHotkeyService::registerEventHotKey(
    std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID identifier) {
    if (keyCode > largestKeyCode || (modifiers & ~knownModifiers) != 0)
        return EventHotKeyRef::none;
    const EventHotKeyRef handle {++m_lastHandle};
    const Combination combination {keyCode, modifiers};
    const bool isLive = m_isAvailable && isFree(combination);
    m_hotkeys.emplace(handle, Hotkey {combination, identifier, isLive});
    return handle;
}

void HeadlessHotkeyService::unregisterEventHotKey(EventHotKeyRef hotkey) {
    m_unregisterCount += hotkey != EventHotKeyRef::none;
    m_hotkeys.erase(hotkey);
}

HotkeyStatus HeadlessHotkeyService::status(EventHotKeyRef hotkey) const {
    const auto found = m_hotkeys.find(hotkey);
    if (found == m_hotkeys.end())
        return HotkeyStatus::unsupported;
    if (!m_isAvailable)
        return HotkeyStatus::unavailable;
    return found->second.isLive ? HotkeyStatus::live : HotkeyStatus::heldElsewhere;
}

void HeadlessHotkeyService::setStatusChangeHandler(std::function<void()> handler) {
    m_statusChangeHandler = std::move(handler);
}

void HeadlessHotkeyService::setHeldElsewhere(Combination combination, bool held) {
    if (held)
        m_heldElsewhere.insert(combination);
    else
        m_heldElsewhere.erase(combination);
    retry();
}

void HeadlessHotkeyService::setAvailable(bool available) {
    m_isAvailable = available;
    for (auto& [handle, hotkey] : m_hotkeys)
        hotkey.isLive = false;
    retry();
}

bool HeadlessHotkeyService::press(Combination combination) {
    if (m_isSuspended)
        return false;
    for (const auto& [handle, hotkey] : m_hotkeys) {
        if (hotkey.isLive && hotkey.combination == combination) {
            const ApplicationEvent event {
                {kEventClassKeyboard, kEventHotKeyPressed}, hotkey.identifier};
            GetApplicationEventTarget().sendEvent(event);
            return true;
        }
    }
    return false;
}

bool HeadlessHotkeyService::isFree(Combination combination) const {
    return !m_heldElsewhere.contains(combination)
        && std::ranges::none_of(m_hotkeys, [combination](const auto& entry) {
               return entry.second.isLive && entry.second.combination == combination;
           });
}

void HeadlessHotkeyService::retry() {
    for (auto& [handle, hotkey] : m_hotkeys) {
        if (!hotkey.isLive)
            hotkey.isLive = m_isAvailable && isFree(hotkey.combination);
    }
    if (m_statusChangeHandler)
        m_statusChangeHandler();
}

} // namespace kw
