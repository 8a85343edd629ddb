// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkit/platform/ui/WebFrame.h>

#include <memory>
#include <string>
#include <utility>

namespace kw {

/// Why a page is to be left for another.
enum class WebNavigationType { linkClicked, formSubmitted, backForward, reload, other };

/// What a policy delegate is asked about.
struct WebNavigationAction {
    WebNavigationType type = WebNavigationType::other;
    std::string originalURL;
};

/// How a policy delegate answers. What it has not answered when it returns is ignored.
class KW_EXPORT WebPolicyDecisionListener : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void use() { m_isUsed = true; }
    void ignore() { m_isUsed = false; }
    bool isUsed() const { return m_isUsed; }

private:
    bool m_isUsed = false;
};

/// A web page: a native one of whoever shows the views, so it draws nothing itself. Where there is
/// none, as in a program without `KWToolkitQtWeb`, it stays empty, which loading says on the
/// console. What the page may do is in `WebPreferences`; it can download nothing and open no
/// windows. Main thread.
class KW_EXPORT WebView : public NSView {
public:
    explicit WebView(NSRect frame = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    WebFrame& mainFrame() { return *m_mainFrame; }

    /// Decides where the user and the page itself can go from what was loaded: nowhere, unless it
    /// says so. May have the methods
    /// `webView:decidePolicyForNavigationAction:request:frame:decisionListener:` and
    /// `webView:decidePolicyForNewWindowAction:request:newFrameName:decisionListener:`. They take
    /// the view (`WebView&`), the action (`const WebNavigationAction&`), the address
    /// (`const std::string&`), the frame (`WebFrame&`) or the new frame's name
    /// (`const std::string&`), and the listener (`WebPolicyDecisionListener&`). The second is only
    /// told: no window is opened. Not owned.
    std::shared_ptr<NSObject> policyDelegate() const { return m_policyDelegate.lock(); }
    void setPolicyDelegate(WeakReference delegate) { m_policyDelegate = std::move(delegate); }
    /// May have the methods `webView:didReceiveTitle:forFrame:`, which takes the view, the title
    /// (`const std::string&`) and the frame (`WebFrame&`), and `webView:didFinishLoadForFrame:` and
    /// `webView:didFailLoadForFrame:`, which take the view and the frame. Not owned.
    std::shared_ptr<NSObject> frameLoadDelegate() const { return m_frameLoadDelegate.lock(); }
    void setFrameLoadDelegate(WeakReference delegate) { m_frameLoadDelegate = std::move(delegate); }

    // For whoever shows it.

    void didReceiveTitle(const std::string& title);
    void didFinishLoad(bool isLoaded);
    /// Whether the main frame may leave what was loaded for the address.
    bool decidesToNavigate(const WebNavigationAction& action, const std::string& url);
    /// A link is to open a window of its own, with that name.
    void wantsWindow(
        const WebNavigationAction& action, const std::string& url, const std::string& name);

private:
    friend class WebFrame;
    void frameChanged() { setNeedsPeerUpdate(); }

    const std::shared_ptr<WebFrame> m_mainFrame;
    WeakReference m_policyDelegate;
    WeakReference m_frameLoadDelegate;
};

} // namespace kw
