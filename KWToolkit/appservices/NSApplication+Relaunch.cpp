// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/NSApplication+Relaunch.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSApplication.h>

#include <memory>
#include <string>

namespace kw {

namespace {

using Observer = NSNotificationCenter::Observer;

/// Launches the application at the end of this one, once.
class RelaunchAtEnd {
public:
    explicit RelaunchAtEnd(std::string identifier) {
        *m_observer = center().addObserver(NSApplicationWillTerminateNotification, nullptr,
            [observer = m_observer, identifier = std::move(identifier)](const NSNotification&) {
                center().removeObserver(*observer);
                Platform::workspace().launchApplication(identifier);
            });
    }
    ~RelaunchAtEnd() { center().removeObserver(*m_observer); }
    RelaunchAtEnd(const RelaunchAtEnd&) = delete;
    RelaunchAtEnd& operator=(const RelaunchAtEnd&) = delete;

private:
    static NSNotificationCenter& center() { return NSNotificationCenter::defaultCenter(); }

    // Shared: the block may outlive this, where another thread posts.
    std::shared_ptr<Observer> m_observer = std::make_shared<Observer>(Observer::none);
};

} // namespace

void relaunchApp() {
    const auto identifier = NSBundle::mainBundle().objectForInfoDictionaryKey("CFBundleIdentifier");
    const RelaunchAtEnd relaunch(identifier.value_or(std::string()));
    NSApplication::sharedApplication().terminate();
}

} // namespace kw
