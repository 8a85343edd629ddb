// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/HotkeyService.h>

#include <map>
#include <set>
#include <utility>

namespace kw {

/// A desktop's hotkeys in memory: combinations, other clients that hold some, and presses.
class KW_EXPORT HeadlessHotkeyService final : public HotkeyService {
public:
    /// A key code with hotkey modifier masks.
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    HotkeyCapabilities capabilities() const override;
    EventHotKeyRef registerEventHotKey(
        std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID identifier) override;
    void unregisterEventHotKey(EventHotKeyRef hotkey) override;
    HotkeyStatus status(EventHotKeyRef hotkey) const override;
    void setStatusChangeHandler(std::function<void()> handler) override;
    void setSuspended(bool suspended) override { m_isSuspended = suspended; }

    /// Lets another client take a combination, or give it back. One that is live stays live.
    void setHeldElsewhere(Combination combination, bool held);
    /// Takes the desktop away, or brings it back.
    void setAvailable(bool available);

    /// Presses a combination. Returns whether it reached the application.
    bool press(Combination combination);

    bool isSuspended() const { return m_isSuspended; }
    /// What is registered now, live or not.
    std::size_t registrationCount() const { return m_hotkeys.size(); }
    /// How often a handle other than the empty one was given back.
    int unregisterCount() const { return m_unregisterCount; }

private:
    struct Hotkey {
        Combination combination;
        EventHotKeyID identifier;
        bool isLive = false;
    };
    bool isFree(Combination combination) const;
    void retry();

    std::map<EventHotKeyRef, Hotkey> m_hotkeys;
    std::set<Combination> m_heldElsewhere;
    std::function<void()> m_statusChangeHandler;
    std::uint64_t m_lastHandle = 0;
    int m_unregisterCount = 0;
    bool m_isAvailable = true;
    bool m_isSuspended = false;
};

} // namespace kw
