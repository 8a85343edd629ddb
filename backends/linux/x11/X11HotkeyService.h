// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/HotkeyService.h>
#include <KWToolkit/platform/services/RunLoop.h>
#include <backends/linux/x11/X11Connection.h>
#include <backends/linux/x11/X11Modifiers.h>

#include <bitset>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace kw {

/// System-wide hotkeys as passive key grabs on the root windows of an X server.
///
/// Key codes are the server's own, 8 to 255. Command is Super, Option is Alt, wherever the modifier
/// mapping has them; locks do not matter. What another client holds is tried again every two
/// seconds and when the mapping changes; a display that is missing or lost, every two seconds.
class KW_EXPORT X11HotkeyService final : public HotkeyService {
public:
    /// The display is named as in DISPLAY; an empty name is what DISPLAY says. Events are read by
    /// the loop of the thread that makes the service.
    explicit X11HotkeyService(std::string displayName = {});
    ~X11HotkeyService() override;

    HotkeyCapabilities capabilities() const override;
    EventHotKeyRef registerEventHotKey(
        std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID identifier) override;
    void unregisterEventHotKey(EventHotKeyRef hotkey) override;
    HotkeyStatus status(EventHotKeyRef hotkey) const override;
    void setStatusChangeHandler(std::function<void()> handler) override;
    void setSuspended(bool suspended) override;

private:
    struct Hotkey {
        xcb_keycode_t keyCode;
        std::uint32_t modifiers;
        EventHotKeyID identifier;
        std::uint16_t bits = 0; ///< the modifiers as they were last grabbed
        bool isGrabbed = false;
        bool isLive = false; ///< is grabbed, or was when the service was suspended
    };

    bool isConnected() const { return m_connection && !m_connection->isLost(); }
    void connect();
    void disconnect();

    void grab(Hotkey& hotkey);
    void grabMissing();
    void ungrab(Hotkey& hotkey);
    void ungrabAll();

    // One pass: what the server says, what is to be done later, then one call of the host.
    void pass();
    void readEvents();
    void handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_key_press_event_t& event);
    void handleRelease(xcb_keycode_t keyCode);
    void readMapping();
    void callHost();
    std::optional<EventHotKeyID> takePress();

    bool needsRetry() const;
    void retry();
    void checkHeldKeys();
    void schedule(RunLoop::Timer& timer, double delay, void (X11HotkeyService::*task)());

    const std::string m_displayName;
    RunLoop& m_runLoop;
    std::unique_ptr<X11Connection> m_connection;
    X11Modifiers m_modifiers;
    std::map<EventHotKeyRef, Hotkey> m_hotkeys;
    std::uint64_t m_lastHandle = 0;
    std::function<void()> m_statusChangeHandler;
    bool m_isSuspended = false;

    bool m_isMappingStale = false;
    bool m_hasStatusNews = false;
    std::deque<EventHotKeyRef> m_presses; ///< what the host is still to be told
    std::bitset<256> m_pressedKeys; ///< whose press was seen, and no release yet
    std::bitset<256> m_heldKeys; ///< down since before they were grabbed

    RunLoop::Watch m_watch = RunLoop::Watch::none;
    RunLoop::Timer m_passTimer = RunLoop::Timer::none;
    RunLoop::Timer m_retryTimer = RunLoop::Timer::none;
    RunLoop::Timer m_heldKeysTimer = RunLoop::Timer::none;
};

} // namespace kw
