// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/NSApplication+Relaunch.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSApplication.h>

#include <atomic>
#include <memory>
#include <string>
#include <utility>

namespace kw {

namespace {

/// Launches the application at the end of this one, once.
class RelaunchAtEnd {
public:
    explicit RelaunchAtEnd(std::string identifier)
        : m_observer(center().addObserver(NSApplicationWillTerminateNotification, nullptr,
              [isDone = std::make_shared<std::atomic_flag>(), identifier = std::move(identifier)](
                  const NSNotification&) {
                  if (!isDone->test_and_set())
                      Platform::workspace().launchApplication(identifier);
              })) { }
    ~RelaunchAtEnd() { center().removeObserver(m_observer); }
    RelaunchAtEnd(const RelaunchAtEnd&) = delete;
    RelaunchAtEnd& operator=(const RelaunchAtEnd&) = delete;

private:
    static NSNotificationCenter& center() { return NSNotificationCenter::defaultCenter(); }

    NSNotificationCenter::Observer m_observer;
};

} // namespace

void relaunchApp() {
    const auto identifier = NSBundle::mainBundle().objectForInfoDictionaryKey("CFBundleIdentifier");
    const RelaunchAtEnd relaunch(identifier.value_or(std::string()));
    NSApplication::sharedApplication().terminate();
}

} // namespace kw
