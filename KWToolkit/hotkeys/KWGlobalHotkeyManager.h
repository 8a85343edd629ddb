// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/hotkeys/HotkeyRecord.h>
#include <KWToolkit/hotkeys/KWHotkeyObject.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/ApplicationEvents.h>
#include <KWToolkit/platform/foundation/NamedCallable.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kw {

/// Key combinations that work whichever application is in front. One manager a process; main
/// thread.
///
///     auto& hotkeys = kw::KWGlobalHotkeyManager::hotkeyManager();
///     hotkeys.registerHotkey(keycode, kw::SEL("toggle"), player,
///         /*cmd*/ true, /*control*/ false, /*option*/ true, /*shift*/ false);
///     hotkeys.registerHotkey(hotkeyFromRecord(record), {"quit", [] { … }});
///
/// A combination is a key code with four modifiers, and has one registration at most: a new one
/// replaces the old. A registration is kept whether or not the desktop accepts the combination;
/// `statusOfHotkey` tells. Nothing is given back at exit.
class KW_EXPORT KWGlobalHotkeyManager : public NSObject {
public:
    /// By hotkey key: key code plus modifier mask, modulo 0x10000.
    using Registrations = std::unordered_map<std::uint16_t, std::shared_ptr<KWHotkeyObject>>;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The manager. However it is asked for, it is the same one, made on first use.
    static KWGlobalHotkeyManager& hotkeyManager();
    static KWGlobalHotkeyManager& sharedFramistan() { return hotkeyManager(); }
    static KWGlobalHotkeyManager& allocWithZone() { return hotkeyManager(); }
    /// Class set-up: makes the manager if there is none yet.
    static void initialize() { hotkeyManager(); }
    /// Sets a new manager up; leaves one that is set up untouched. Returns the manager.
    KWGlobalHotkeyManager& init();

    /// Registers a combination for an action without arguments. The target is not owned: a press
    /// after its death does nothing, but the combination stays taken until it is unregistered.
    ///
    /// Modifiers come in the order command, control, option, shift (a hotkey record's is another).
    /// A target that does not answer to the action makes the press throw `NSException`.
    void registerHotkey(std::uint32_t keycode, SEL action, WeakReference target, bool cmdModifier,
        bool controlModifier, bool optionModifier, bool shiftModifier);

    /// The same for a callable, which the registration owns.
    void registerHotkey(std::uint32_t keycode, NamedCallable action, bool cmdModifier,
        bool controlModifier, bool optionModifier, bool shiftModifier);

    /// The same for a hotkey that was recorded. One that names no key is ignored.
    void registerHotkey(const Hotkey& hotkey, SEL action, WeakReference target);
    void registerHotkey(const Hotkey& hotkey, NamedCallable action);

    /// Gives a combination back; nothing for one that is not registered.
    void unregisterHotkey(std::uint32_t keycode, bool cmdModifier, bool controlModifier,
        bool optionModifier, bool shiftModifier);
    void unregisterHotkey(const Hotkey& hotkey);

    const Registrations& registeredHotkeys() const { return m_registeredHotkeys; }

    /// How a registration stands with the desktop right now; nothing for an unknown combination.
    std::optional<HotkeyStatus> statusOfHotkey(std::uint32_t keycode, bool cmdModifier,
        bool controlModifier, bool optionModifier, bool shiftModifier) const;
    std::optional<HotkeyStatus> statusOfHotkey(const Hotkey& hotkey) const;

    /// Calls `handler` after statuses have changed by themselves: another client gave a combination
    /// back, the desktop was lost. One handler; an empty one ends the calls.
    void setStatusChangeHandler(std::function<void()> handler);

private:
    KWGlobalHotkeyManager() = default;
    EventHotKeyRef replaceCombination(std::uint32_t keycode, std::uint32_t modifiers, SEL action);

    bool m_hasInited = false;
    Registrations m_registeredHotkeys;
};

/// Handles the press of a hotkey: performs the action of the registration that the event's
/// identifier names. Always returns 0. What the action throws passes through.
KW_EXPORT OSStatus KWHotKeyHandler(EventHandlerCallRef nextHandler, EventRef event, void* userData);

/// The first four bytes of a text in Mac OS Roman, in memory order (on a little-endian machine the
/// first is the least significant), 0 for those missing and for a text that has no such form.
KW_EXPORT std::uint32_t fourCharCodeToOSType(std::string_view text);

} // namespace kw
