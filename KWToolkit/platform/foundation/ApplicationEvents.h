// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Events addressed to the application itself, and who handles them.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace kw {

/// 0 is success.
using OSStatus = std::int32_t;
inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus eventNotHandledErr = -9874;
inline constexpr OSStatus eventParameterNotFoundErr = -9870;

/// A four-character code: 'keyb' is 0x6B657962.
using FourCharCode = std::uint32_t;
consteval FourCharCode fourCharCode(const char (&text)[5]) {
    FourCharCode code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

inline constexpr FourCharCode kEventClassKeyboard = fourCharCode("keyb");
inline constexpr std::uint32_t kEventHotKeyPressed = 5;
inline constexpr FourCharCode kEventParamDirectObject = fourCharCode("----");
inline constexpr FourCharCode typeEventHotKeyID = fourCharCode("hkid");

/// How the platform names a hotkey in the event of its press.
struct EventHotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
    friend bool operator==(const EventHotKeyID&, const EventHotKeyID&) = default;
};
static_assert(sizeof(EventHotKeyID) == 8);

struct EventTypeSpec {
    FourCharCode eventClass = 0;
    std::uint32_t eventKind = 0;
    friend bool operator==(const EventTypeSpec&, const EventTypeSpec&) = default;
};

/// An event for the application. Events are looked at while they are handled and not kept.
struct ApplicationEvent {
    EventTypeSpec type;
    std::optional<EventHotKeyID> directObject;
};
using EventRef = const ApplicationEvent*;

/// Copies a parameter of the event to `data`. Fails with `eventParameterNotFoundErr`, and writes
/// nothing, where the event is null, has no such parameter, or `size` is less than its size.
KW_EXPORT OSStatus GetEventParameter(
    EventRef event, FourCharCode name, FourCharCode type, std::size_t size, void* data);

/// The handlers behind the one that is called; this library calls no next handler.
struct EventHandlerCall;
using EventHandlerCallRef = EventHandlerCall*;
using EventHandler = OSStatus (*)(EventHandlerCallRef nextHandler, EventRef event, void* userData);

/// Hands events to handlers. Main thread.
class KW_EXPORT EventTarget {
public:
    /// Handlers installed later are asked first. They stay until the process ends.
    void installEventHandler(EventHandler handler, EventTypeSpec type, void* userData);

    /// Asks the handlers of the event's type in turn until one does not answer
    /// `eventNotHandledErr`, and returns its answer.
    OSStatus sendEvent(const ApplicationEvent& event);

private:
    struct Installed {
        EventHandler handler;
        EventTypeSpec type;
        void* userData;
    };
    std::vector<Installed> m_installed;
};

/// Where events for the application go.
KW_EXPORT EventTarget& GetApplicationEventTarget();

} // namespace kw
