// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/services/HotkeyService.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace kw {

/// One live registration of `KWGlobalHotkeyManager`.
class KW_EXPORT KWHotkeyObject : public NSObject {
public:
    /// Keeps the key code's lower 16 bits. The target is not owned.
    KWHotkeyObject(
        std::uint32_t keycode, EventHotKeyRef eventHotKeyRef, WeakReference target, SEL action)
        : m_keycode(static_cast<std::uint16_t>(keycode))
        , m_eventHotKeyRef(eventHotKeyRef)
        , m_target(std::move(target))
        , m_action(action) { }

    /// The same with a callable, which is owned, in the place of a target.
    KWHotkeyObject(std::uint32_t keycode, EventHotKeyRef eventHotKeyRef,
        std::function<void()> callable, SEL action)
        : KWHotkeyObject(keycode, eventHotKeyRef, WeakReference(), action) {
        m_callable = std::move(callable);
    }

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    std::uint16_t keycode() const { return m_keycode; }
    EventHotKeyRef eventHotKeyRef() const { return m_eventHotKeyRef; }
    /// Null once the target is gone, and for a callable.
    std::shared_ptr<NSObject> _target() const { return m_target.lock(); }
    SEL _action() const { return m_action; }

    /// Performs the action on the target, or calls the callable. Nothing for a target that is gone.
    void performAction() const;

private:
    std::uint16_t m_keycode;
    EventHotKeyRef m_eventHotKeyRef;
    WeakReference m_target;
    SEL m_action;
    std::function<void()> m_callable;
};

} // namespace kw
