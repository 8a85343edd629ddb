// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSApplication.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>

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
    static auto& object = *new Class(
        "NSApplication", NSObject::classObject(), {method("terminate", &NSApplication::terminate)});
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

} // namespace kw
