// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSApplication.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSWindow.h>

#include <algorithm>
#include <limits>

namespace kw {

namespace {

/// Is set while this lives.
class Flag {
public:
    explicit Flag(bool& flag)
        : m_flag(flag) {
        m_flag = true;
    }
    ~Flag() { m_flag = false; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

private:
    bool& m_flag;
};

} // namespace

double NSAppKitVersionNumber() { return Platform::application().frameworkVersion(); }

NSApplication& NSApplication::sharedApplication() {
    static auto& application = *new NSApplication;
    return application;
}

Class& NSApplication::classObject() {
    static auto& object = *new Class("NSApplication", NSObject::classObject(),
        {
            method("terminate", &NSApplication::terminate),
            method("stopModal", &NSApplication::stopModal),
            method("abortModal", &NSApplication::abortModal),
        });
    return object;
}

void NSApplication::terminate() {
    // A window that is asked to close, or an observer, may do this, too.
    if (m_isTerminating || Platform::application().isEnding())
        return;
    const Flag flag(m_isTerminating);
    static const SEL shouldTerminate("applicationShouldTerminate:");
    const auto delegate = m_delegate.lock();
    if (delegate && delegate->respondsToSelector(shouldTerminate)
        && !send<bool>(*delegate, shouldTerminate, *this))
        return;
    if (!Platform::application().prepareToTerminate())
        return;
    NSNotificationCenter::defaultCenter().postNotificationName(
        NSApplicationWillTerminateNotification, this);
    Platform::application().exit();
}

NSModalSession NSApplication::beginModalSessionForWindow(NSWindow& window) {
    const NSModalSession session {++m_lastSession};
    m_sessions.push_back({session, window, std::nullopt});
    if (!window.isVisible())
        window.center();
    window.setModal(true);
    window.makeKeyAndOrderFront();
    return session;
}

std::optional<int> NSApplication::codeOf(NSModalSession session) const {
    const auto found = std::ranges::find(m_sessions, session, &Session::id);
    if (found == m_sessions.end())
        return NSRunAbortedResponse;
    if (found->code)
        return found->code;
    const auto window = std::static_pointer_cast<NSWindow>(found->window.lock());
    const bool goesOn = window && window->isVisible() && !Platform::application().isEnding();
    return goesOn ? std::nullopt : std::optional(NSRunAbortedResponse);
}

int NSApplication::runModalSession(NSModalSession session) {
    if (const auto code = codeOf(session))
        return *code;
    Platform::runLoop().runOnce(0);
    return codeOf(session).value_or(NSRunContinuesResponse);
}

void NSApplication::endModalSession(NSModalSession session) {
    const auto found = std::ranges::find(m_sessions, session, &Session::id);
    if (found == m_sessions.end())
        return;
    const auto window = std::static_pointer_cast<NSWindow>(found->window.lock());
    m_sessions.erase(found);
    if (window)
        window->setModal(false);
}

int NSApplication::runModalForWindow(NSWindow& window) {
    // Ended also where what an event calls throws.
    struct Running {
        NSModalSession session;
        ~Running() { sharedApplication().endModalSession(session); }
    };
    const auto alive = window.weak_from_this().lock();
    const Running running {beginModalSessionForWindow(window)};
    int result = runModalSession(running.session);
    while (result == NSRunContinuesResponse) {
        Platform::runLoop().runOnce(std::numeric_limits<double>::infinity());
        result = runModalSession(running.session);
    }
    return result;
}

void NSApplication::stopModalWithCode(int code) {
    if (m_sessions.empty())
        return;
    // What means that it goes on would never end it.
    m_sessions.back().code = code == NSRunContinuesResponse ? NSRunStoppedResponse : code;
    // The loop may be waiting for an event.
    Platform::runLoop().perform([] { });
}

std::shared_ptr<NSWindow> NSApplication::modalWindow() const {
    return m_sessions.empty() ? nullptr
                              : std::static_pointer_cast<NSWindow>(m_sessions.back().window.lock());
}

} // namespace kw
