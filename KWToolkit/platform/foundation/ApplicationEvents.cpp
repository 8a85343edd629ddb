// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/ApplicationEvents.h>

#include <cstring>

namespace kw {

OSStatus GetEventParameter(
    EventRef event, FourCharCode name, FourCharCode type, std::size_t size, void* data) {
    if (!event || !event->directObject || name != kEventParamDirectObject
        || type != typeEventHotKeyID || size < sizeof *event->directObject)
        return eventParameterNotFoundErr;
    std::memcpy(data, &*event->directObject, sizeof *event->directObject);
    return noErr;
}

void EventTarget::installEventHandler(EventHandler handler, EventTypeSpec type, void* userData) {
    m_installed.push_back({handler, type, userData});
}

OSStatus EventTarget::sendEvent(const ApplicationEvent& event) {
    // By index and by value: a handler may install another.
    for (std::size_t i = m_installed.size(); i-- > 0;) {
        const Installed installed = m_installed[i];
        if (installed.type != event.type)
            continue;
        const OSStatus status = installed.handler(nullptr, &event, installed.userData);
        if (status != eventNotHandledErr)
            return status;
    }
    return eventNotHandledErr;
}

EventTarget& GetApplicationEventTarget() {
    static auto& target = *new EventTarget;
    return target;
}

} // namespace kw
