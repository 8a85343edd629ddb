// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/controls/KWSeparatorView.h>
#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSWindow.h>
#include <KWToolkit/platform/ui/WebView.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kw {

/// A window that shows a web page above one or two buttons and waits for one of them. Main thread.
///
///     const int code = kw::KWHtmlModal::htmlWindowWithSize({500, 400}, "file:///…/license.html",
///         "Agree", "Decline");
///
/// The page is cut off where it is larger than the window, and only the policy delegate can let
/// its links lead anywhere; see `WebView`.
///
/// Deliberate: the window has but a title, which stays the desktop's default; its settings hold
/// for every web page of the process from then on (no JavaScript, Java or plug-ins, the smallest
/// cache and none on disk); no key presses a button; and there are always two.
class KW_EXPORT KWHtmlModal : public NSObject {
public:
    /// Shows the modal and waits. 1 for the first button, 2 for the second, else what the session
    /// was stopped with: `NSRunAbortedResponse` where the window was closed from outside or the
    /// application ends.
    static std::int32_t htmlWindowWithSize(NSSize size, const std::optional<std::string>& url,
        const std::string& firstButtonText, const std::string& secondButtonText,
        const WeakReference& webViewDelegate = nullptr);
    /// With "OK" and "Cancel".
    static std::int32_t htmlWindowWithSize(NSSize size, const std::optional<std::string>& url);

    /// Is not shown yet. Without an address the page is empty. The page of a file URL is read now:
    /// one that cannot be is empty.
    ///
    /// Deliberate: a file's text is UTF-16, so that one in UTF-8 shows what its pairs of bytes
    /// happen to mean. What it refers to is looked for beside it.
    KWHtmlModal(NSSize size, const std::optional<std::string>& url,
        const std::string& firstButtonText, const std::string& secondButtonText,
        WeakReference webViewDelegate = nullptr);
    ~KWHtmlModal() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Shows the window and waits until its session is stopped; see `htmlWindowWithSize`.
    std::int32_t beginModal();
    void firstButtonClicked(NSObject* sender);
    void secondButtonClicked(NSObject* sender);
    /// Closes the window, then stops the session that was begun last.
    void endModalWithCode(std::int32_t code);

    /// The message `webView:didReceiveTitle:forFrame:`: makes the page's title the window's, if the
    /// frame is the view's main frame. The modal is no delegate of its view: a host that
    /// wants this makes it the view's `frameLoadDelegate`.
    void webView(WebView& view, const std::string& didReceiveTitle, WebFrame& forFrame);

    const std::shared_ptr<NSButton>& okButton() const { return m_okButton; }
    const std::shared_ptr<NSButton>& cancelbutton() const { return m_cancelbutton; }
    const std::shared_ptr<NSWindow>& htmlWindow() const { return m_htmlWindow; }
    const std::shared_ptr<WebView>& htmlWebView() const { return m_htmlWebView; }
    /// The strip that holds the buttons, in points.
    std::int32_t footerHeight() const { return m_footerHeight; }

private:
    void load(const std::string& url);
    std::shared_ptr<NSButton> addButton(const std::string& title, double rightEdge, SEL action);

    std::shared_ptr<NSWindow> m_htmlWindow;
    std::shared_ptr<WebView> m_htmlWebView;
    std::shared_ptr<NSButton> m_okButton;
    std::shared_ptr<NSButton> m_cancelbutton;
    std::shared_ptr<KWSeparatorView> m_bottomView;
    std::int32_t m_footerHeight = 48;
};

} // namespace kw
