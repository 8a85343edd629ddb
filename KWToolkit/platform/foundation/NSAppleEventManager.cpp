// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSAppleEventManager.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>

namespace kw {

NSAppleEventManager& NSAppleEventManager::sharedAppleEventManager() {
    static auto& manager = *new NSAppleEventManager;
    return manager;
}

void NSAppleEventManager::setEventHandler(
    WeakReference handler, SEL selector, FourCharCode eventClass, FourCharCode eventID) {
    const Key key {eventClass, eventID};
    Handling& handling = m_handlings[key];
    handling.handler = std::move(handler);
    handling.selector = selector;
    // Not now: the handler may be under construction.
    if (!handling.waiting.empty())
        Platform::runLoop().perform([this, key] { dispatchWaiting(key); });
}

bool NSAppleEventManager::hasEventHandler(FourCharCode eventClass, FourCharCode eventID) const {
    const auto found = m_handlings.find({eventClass, eventID});
    return found != m_handlings.end() && found->second.handler.lock();
}

void NSAppleEventManager::dispatch(const NSAppleEventDescriptor& event) {
    const Key key {event.eventClass, event.eventID};
    Handling& handling = m_handlings[key];
    const auto handler = handling.handler.lock();
    if (handler && handling.waiting.empty())
        send(*handler, handling.selector, event, NSAppleEventDescriptor());
    else
        handling.waiting.push_back(event);
}

void NSAppleEventManager::dispatchWaiting(Key key) {
    Handling& handling = m_handlings[key];
    const auto handler = handling.handler.lock();
    if (!handler || handling.waiting.empty())
        return;
    const NSAppleEventDescriptor event = std::move(handling.waiting.front());
    handling.waiting.pop_front();
    // Ahead of the call: what comes meanwhile has to wait for the others, and the handler may
    // throw.
    if (!handling.waiting.empty())
        Platform::runLoop().perform([this, key] { dispatchWaiting(key); });
    send(*handler, handling.selector, event, NSAppleEventDescriptor());
}

} // namespace kw
