// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/WebView.h>

#include <KWToolkit/platform/foundation/Message.h>

namespace kw {

namespace {

/// Sends it if the delegate has such a method.
template <class... Arguments>
void tell(const WeakReference& delegate, SEL selector, Arguments&&... arguments) {
    const auto told = delegate.lock();
    if (told && told->respondsToSelector(selector))
        send<void>(*told, selector, std::forward<Arguments>(arguments)...);
}

} // namespace

Class& WebPolicyDecisionListener::classObject() {
    static auto& object = *new Class("WebPolicyDecisionListener", NSObject::classObject(),
        {
            method("use", &WebPolicyDecisionListener::use),
            method("ignore", &WebPolicyDecisionListener::ignore),
        });
    return object;
}

WebView::WebView(NSRect frame)
    : NSView(frame)
    , m_mainFrame(std::make_shared<WebFrame>(*this)) { }

Class& WebView::classObject() {
    static auto& object = *new Class("WebView", NSView::classObject());
    return object;
}

void WebView::didReceiveTitle(const std::string& title) {
    static const SEL selector("webView:didReceiveTitle:forFrame:");
    tell(m_frameLoadDelegate, selector, *this, title, *m_mainFrame);
}

void WebView::didFinishLoad(bool isLoaded) {
    static const SEL finished("webView:didFinishLoadForFrame:");
    static const SEL failed("webView:didFailLoadForFrame:");
    tell(m_frameLoadDelegate, isLoaded ? finished : failed, *this, *m_mainFrame);
}

bool WebView::decidesToNavigate(const WebNavigationAction& action, const std::string& url) {
    static const SEL selector(
        "webView:decidePolicyForNavigationAction:request:frame:decisionListener:");
    WebPolicyDecisionListener listener;
    tell(m_policyDelegate, selector, *this, action, url, *m_mainFrame, listener);
    return listener.isUsed();
}

void WebView::wantsWindow(
    const WebNavigationAction& action, const std::string& url, const std::string& name) {
    static const SEL selector(
        "webView:decidePolicyForNewWindowAction:request:newFrameName:decisionListener:");
    WebPolicyDecisionListener listener;
    tell(m_policyDelegate, selector, *this, action, url, name, listener);
}

} // namespace kw
