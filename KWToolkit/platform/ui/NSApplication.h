// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kw {

class NSWindow;

/// Posted when the application is about to end and nothing can keep it any more.
inline constexpr const char* NSApplicationWillTerminateNotification =
    "NSApplicationWillTerminateNotification";

// What `runModalSession` answers besides the codes of `stopModalWithCode`.
inline constexpr int NSRunStoppedResponse = -1000; ///< `stopModal` was called
inline constexpr int NSRunAbortedResponse = -1001; ///< see `runModalSession`
inline constexpr int NSRunContinuesResponse = -1002;

/// A window that is run modally. `none` stands for no session.
enum class NSModalSession : std::uint64_t { none = 0 };

/// The version of the application framework. Above 824 is a newer system: what it offers beyond an
/// older one is named where it is used.
KW_EXPORT double NSAppKitVersionNumber();

/// The running application. Main thread.
class KW_EXPORT NSApplication : public NSObject {
public:
    static NSApplication& sharedApplication();

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// May have the method `applicationShouldTerminate:`, which takes the application
    /// (`NSApplication&`) and answers a `bool`. Not owned.
    std::shared_ptr<NSObject> delegate() const { return m_delegate.lock(); }
    void setDelegate(WeakReference delegate) { m_delegate = std::move(delegate); }

    /// Ends the application, unless the delegate or one of the host's windows refuses: posts
    /// `NSApplicationWillTerminateNotification`, then leaves the host's event loop, or exits where
    /// none runs. Returns where the application goes on, or its event loop has yet to end. Has no
    /// effect while it is under way.
    void terminate();

    /// Shows the window, in the middle of the screen where it was not shown yet, and keeps the user
    /// from the others. Sessions nest.
    NSModalSession beginModalSessionForWindow(NSWindow& window);
    /// Handles the events that are there. Answers `NSRunContinuesResponse` until the session is
    /// stopped, then its code. Where its window is not on the screen any more, or the application
    /// is about to end, or the session is none, that is `NSRunAbortedResponse`.
    int runModalSession(NSModalSession session);
    /// The window stays as it is.
    void endModalSession(NSModalSession session);
    /// Runs a session for the window until it is stopped, and waits for events in between. Returns
    /// what the last run answered.
    int runModalForWindow(NSWindow& window);
    /// Lets the session that was begun last return the code. Nothing where there is none.
    void stopModalWithCode(int code);
    void stopModal() { stopModalWithCode(NSRunStoppedResponse); }
    void abortModal() { stopModalWithCode(NSRunAbortedResponse); }
    /// Of the session that was begun last; null without one.
    std::shared_ptr<NSWindow> modalWindow() const;

private:
    struct Session {
        NSModalSession id;
        WeakReference window;
        std::optional<int> code; // with which it was stopped
    };

    NSApplication() = default;
    std::optional<int> codeOf(NSModalSession session) const;

    WeakReference m_delegate;
    std::vector<Session> m_sessions; // the innermost last
    std::uint64_t m_lastSession = 0;
    bool m_isTerminating = false;
};

} // namespace kw
