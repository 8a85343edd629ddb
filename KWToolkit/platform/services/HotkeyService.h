// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/ApplicationEvents.h>

#include <cstdint>
#include <functional>

namespace kw {

/// Modifiers of a system-wide hotkey, in the platform's keyboard-event encoding.
inline constexpr std::uint32_t hotkeyCommandMask = 0x0100;
inline constexpr std::uint32_t hotkeyShiftMask = 0x0200;
inline constexpr std::uint32_t hotkeyOptionMask = 0x0800;
inline constexpr std::uint32_t hotkeyControlMask = 0x1000;

/// A combination held by a hotkey service; `none` is the empty handle.
enum class EventHotKeyRef : std::uint64_t { none = 0 };

/// How a registered combination stands with the desktop right now.
enum class HotkeyStatus {
    live, ///< a press reaches the application
    heldElsewhere, ///< another client has the combination; it is tried again when the keys change
    unsupported, ///< the key code or modifiers are nothing that this desktop can grab
    unavailable, ///< there is no desktop to register with, or it was lost
};

/// What a hotkey service can do.
struct HotkeyCapabilities {
    bool isAvailable = false; ///< there is a desktop and it answers
    bool reportsConflicts = false; ///< `heldElsewhere` is told apart from `live`
    bool choosesKeys = false; ///< the application, not the user, decides on the combination
};

/// System-wide key combinations. Used on the main thread.
///
/// A press is sent to `GetApplicationEventTarget()` as an event of class `kEventClassKeyboard` and
/// kind `kEventHotKeyPressed` that carries the registration's identifier, on the main thread and
/// from the run loop, once for each time the key goes down (not for its auto-repeat).
class KW_EXPORT HotkeyService {
public:
    virtual ~HotkeyService();

    virtual HotkeyCapabilities capabilities() const = 0;

    /// Registers a combination: a key code with hotkey modifier masks. The handle is not empty when
    /// the desktop refuses for now: the service keeps the combination, tries again when the
    /// keyboard mapping changes, and tells its status. It is empty for a combination that no later
    /// change can make possible here.
    virtual EventHotKeyRef registerEventHotKey(
        std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID identifier) = 0;

    /// Gives a combination back. The empty handle, or one that is gone, is ignored.
    virtual void unregisterEventHotKey(EventHotKeyRef hotkey) = 0;

    /// `unsupported` for the empty handle and for one that is gone.
    virtual HotkeyStatus status(EventHotKeyRef hotkey) const = 0;

    /// Calls `handler` on the main thread after statuses or capabilities have changed by
    /// themselves. One handler; an empty one ends the calls.
    virtual void setStatusChangeHandler(std::function<void()> handler) = 0;

    /// While suspended, the combinations are not grabbed: their keys reach the focused window, so
    /// that a recorder can record them. Statuses keep telling what held before.
    virtual void setSuspended(bool suspended) = 0;
};

/// The service of a machine without a desktop: keeps nothing and says so.
class KW_EXPORT UnavailableHotkeyService final : public HotkeyService {
public:
    HotkeyCapabilities capabilities() const override { return {}; }
    EventHotKeyRef registerEventHotKey(std::uint32_t, std::uint32_t, EventHotKeyID) override {
        return EventHotKeyRef::none;
    }
    void unregisterEventHotKey(EventHotKeyRef) override { }
    HotkeyStatus status(EventHotKeyRef) const override { return HotkeyStatus::unavailable; }
    void setStatusChangeHandler(std::function<void()>) override { }
    void setSuspended(bool) override { }
};

} // namespace kw
