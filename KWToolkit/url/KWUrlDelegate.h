// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSAppleEventManager.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <memory>

namespace kw {

/// Calls a method of a listener for each URL of the host's own scheme that the desktop sends.
///
///     class Player : public kw::NSObject {
///         void open(std::vector<std::string> parameters); // method("open:", &Player::open)
///     };
///     kw::KWUrlDelegate dispatcher(player);
///
/// The URL "player://open&!p!&song.ogg" sends "open:" with {"song.ogg"}. Parameters arrive as they
/// stand in the URL; `urlDecode` takes off what `urlEncode` put on. A command without a method is
/// ignored without a word.
///
/// Where the URL has no "//", the listener's method takes something else than the list, or it
/// throws a `std::exception`, the console tells so and the listener's method "unhandledUrlCall:",
/// if it has one, is sent the URL. What else is thrown passes through to the run loop.
///
/// The dispatcher made last gets the URLs; after its destruction none does, and they wait for the
/// next. Neither the listener nor the dispatcher is owned by anything here. Main thread.
class KW_EXPORT KWUrlDelegate : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    static std::shared_ptr<KWUrlDelegate> KWUrlDelegateWithListener(WeakReference listener);
    explicit KWUrlDelegate(WeakReference listener);

    /// Null where there is none, or it was destroyed.
    std::shared_ptr<NSObject> delegate() const { return m_delegate.lock(); }
    void setDelegate(WeakReference listener) { m_delegate = std::move(listener); }

    /// Handles a get-URL event, whose direct object is the URL.
    void urlDelegateManager(
        const NSAppleEventDescriptor& event, const NSAppleEventDescriptor& replyEvent);

private:
    void dispatch(const std::string& url) const;
    void reportFailure(const std::string& url, const char* reason) const;

    WeakReference m_delegate;
};

} // namespace kw
