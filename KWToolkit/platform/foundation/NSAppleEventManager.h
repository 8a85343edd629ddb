// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/ApplicationEvents.h>
#include <KWToolkit/platform/foundation/SEL.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <deque>
#include <map>
#include <string>
#include <utility>

namespace kw {

/// An event that another program, or the desktop, sends to this one.
struct NSAppleEventDescriptor {
    FourCharCode eventClass = 0;
    FourCharCode eventID = 0;
    std::string directObject; ///< what it is about: of a get-URL event the URL

    friend bool operator==(const NSAppleEventDescriptor&, const NSAppleEventDescriptor&) = default;
};

inline constexpr FourCharCode kInternetEventClass = fourCharCode("GURL");
inline constexpr FourCharCode kAEGetURL = fourCharCode("GURL");
/// The user starts the application that runs already. It has no direct object.
inline constexpr FourCharCode kCoreEventClass = fourCharCode("aevt");
inline constexpr FourCharCode kAEReopenApplication = fourCharCode("rapp");

/// Hands the events of other programs to their handlers, one for each class and identifier. Main
/// thread.
///
/// An event that nobody handles yet waits, however long, for a handler, and reaches it from the run
/// loop. Events of one kind arrive in the order in which they came.
class KW_EXPORT NSAppleEventManager {
public:
    static NSAppleEventManager& sharedAppleEventManager();

    /// Puts a handler in the place of any earlier one. It is not owned; one that is destroyed gets
    /// no more events, and neither does the earlier one. Its method takes the event and a reply
    /// event, both as `NSAppleEventDescriptor`; the reply is not sent.
    void setEventHandler(
        WeakReference handler, SEL selector, FourCharCode eventClass, FourCharCode eventID);

    bool hasEventHandler(FourCharCode eventClass, FourCharCode eventID) const;

    /// Has the event handled at once, unless earlier ones wait. What the handler throws passes
    /// through.
    void dispatch(const NSAppleEventDescriptor& event);

private:
    struct Handling {
        WeakReference handler;
        SEL selector;
        std::deque<NSAppleEventDescriptor> waiting;
    };
    using Key = std::pair<FourCharCode, FourCharCode>;

    NSAppleEventManager() = default;
    void dispatchWaiting(Key key);

    std::map<Key, Handling> m_handlings;
};

} // namespace kw
