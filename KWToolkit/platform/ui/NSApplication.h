// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

namespace kw {

/// Posted when the application is about to end and nothing can keep it any more.
inline constexpr const char* NSApplicationWillTerminateNotification =
    "NSApplicationWillTerminateNotification";

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

private:
    NSApplication() = default;

    WeakReference m_delegate;
    bool m_isTerminating = false;
};

} // namespace kw
