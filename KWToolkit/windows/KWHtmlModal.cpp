// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/KWHtmlModal.h>

#include <KWToolkit/controls/KWOddSeparatorView.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/FileURL.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSURLCache.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkit/platform/ui/WebPreferences.h>

#include <utility>

namespace kw {

namespace {

constexpr double buttonDistance = 20; // from the edge, and from each other
constexpr NSSize buttonEnlargement {15, 5};

/// Deliberate: they stay so, for all web pages.
void restrictWebPages() {
    auto& preferences = WebPreferences::standardPreferences();
    preferences.setCacheModel(WebCacheModel::documentViewer);
    preferences.setJavaEnabled(false);
    preferences.setJavaScriptEnabled(false);
    preferences.setPlugInsEnabled(false);
    NSURLCache::sharedURLCache().setDiskCapacity(0);
}

} // namespace

std::int32_t KWHtmlModal::htmlWindowWithSize(NSSize size, const std::optional<std::string>& url,
    const std::string& firstButtonText, const std::string& secondButtonText,
    const WeakReference& webViewDelegate) {
    const auto modal = std::make_shared<KWHtmlModal>(
        size, url, firstButtonText, secondButtonText, webViewDelegate);
    modal->okButton()->setTitle(firstButtonText);
    modal->cancelbutton()->setTitle(secondButtonText);
    return modal->beginModal();
}

std::int32_t KWHtmlModal::htmlWindowWithSize(NSSize size, const std::optional<std::string>& url) {
    return htmlWindowWithSize(size, url, "OK", "Cancel");
}

KWHtmlModal::KWHtmlModal(NSSize size, const std::optional<std::string>& url,
    const std::string& firstButtonText, const std::string& secondButtonText,
    WeakReference webViewDelegate) {
    restrictWebPages();
    m_htmlWindow = std::make_shared<NSWindow>(NSMakeRect(0, 0, size.width, size.height),
        NSWindowStyleMaskTitled, NSBackingStoreType::buffered, false);

    m_htmlWebView = std::make_shared<WebView>(
        NSMakeRect(0, m_footerHeight, size.width, size.height - m_footerHeight));
    m_htmlWebView->mainFrame().setAllowsScrolling(false);
    m_htmlWebView->setPolicyDelegate(std::move(webViewDelegate));
    m_htmlWindow->contentView()->addSubview(m_htmlWebView);
    if (url)
        load(*url);

    m_bottomView =
        std::make_shared<KWOddSeparatorView>(NSMakeRect(0, 0, size.width, m_footerHeight));
    m_htmlWindow->contentView()->addSubview(m_bottomView);
    m_okButton = addButton(firstButtonText, size.width, SEL("firstButtonClicked:"));
    m_cancelbutton =
        addButton(secondButtonText, m_okButton->frame().origin.x, SEL("secondButtonClicked:"));
}

KWHtmlModal::~KWHtmlModal() {
    m_htmlWebView.reset();
    m_okButton.reset();
    m_cancelbutton.reset();
    m_bottomView.reset();
    m_htmlWindow.reset();
}

Class& KWHtmlModal::classObject() {
    static auto& object = *new Class("KWHtmlModal", NSObject::classObject(),
        {
            method("beginModal", &KWHtmlModal::beginModal),
            method("firstButtonClicked:", &KWHtmlModal::firstButtonClicked),
            method("secondButtonClicked:", &KWHtmlModal::secondButtonClicked),
            method("endModalWithCode:", &KWHtmlModal::endModalWithCode),
            method("webView:didReceiveTitle:forFrame:", &KWHtmlModal::webView),
        });
    return object;
}

void KWHtmlModal::load(const std::string& url) {
    WebFrame& frame = m_htmlWebView->mainFrame();
    if (!isFileURL(url)) {
        frame.loadRequest(url);
        return;
    }
    const std::string path = pathOfFileURL(url).value_or(std::string());
    const auto bytes = Platform::fileSystem().contentsOfFile(path);
    auto html = bytes ? textFromUTF16(*bytes) : std::nullopt;
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    frame.loadHTMLString(std::move(html).value_or(std::string()), fileURLOfPath(folder));
}

std::shared_ptr<NSButton> KWHtmlModal::addButton(
    const std::string& title, double rightEdge, SEL action) {
    auto button = std::make_shared<NSButton>(NSMakeRect(0, 0, 70, 25));
    button->setTitle(title);
    button->sizeToFit();
    const NSSize fitted = button->frame().size;
    const NSSize size {
        fitted.width + buttonEnlargement.width, fitted.height + buttonEnlargement.height};
    // Deliberate: halved as a whole number, towards zero.
    const std::int32_t y = static_cast<std::int32_t>(m_footerHeight - size.height) / 2;
    button->setFrame(
        NSMakeRect(rightEdge - size.width - buttonDistance, y, size.width, size.height));
    button->setTarget(*this);
    button->setAction(action);
    button->setBezelStyle(NSBezelStyle::texturedRounded);
    m_bottomView->addSubview(button);
    return button;
}

std::int32_t KWHtmlModal::beginModal() {
    const auto alive = weak_from_this().lock();
    return NSApplication::sharedApplication().runModalForWindow(*m_htmlWindow);
}

void KWHtmlModal::firstButtonClicked(NSObject*) { endModalWithCode(1); }
void KWHtmlModal::secondButtonClicked(NSObject*) { endModalWithCode(2); }

void KWHtmlModal::endModalWithCode(std::int32_t code) {
    m_htmlWindow->close();
    NSApplication::sharedApplication().stopModalWithCode(code);
}

void KWHtmlModal::webView(WebView& view, const std::string& didReceiveTitle, WebFrame& forFrame) {
    if (&forFrame == &view.mainFrame())
        m_htmlWindow->setTitle(didReceiveTitle);
}

} // namespace kw
