// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWOddSeparatorView.h>
#include <KWToolkit/platform/foundation/NSURLCache.h>
#include <KWToolkit/platform/headless/HeadlessApplicationService.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/platform/headless/HeadlessFileSystem.h>
#include <KWToolkit/platform/headless/HeadlessWebService.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkit/platform/ui/WebPreferences.h>
#include <KWToolkit/windows/KWHtmlModal.h>
#include <tests/unit/windows/HeadlessWindows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::HasSubstr;

struct FixedButtons final : TextMetrics {
    NSSize sizeOfText(std::string_view, const TextAttributes&) override { return {}; }
    NSSize sizeOfButton(const NSAttributedString&) override { return size; }
    NSSize size {40, 22};
};

struct HtmlModal : testing::Test, test::HeadlessWindows {
    NSApplication& application = NSApplication::sharedApplication();
    FixedButtons buttons;
    HeadlessWebService web;
    HeadlessFileSystem files;
    ServiceScope<FixedButtons> buttonScope {buttons};
    ServiceScope<HeadlessWebService> webScope {web};
    ServiceScope<HeadlessFileSystem> fileScope {files};
};

TEST_F(HtmlModal, IsLaidOutByTheSizesOfItsButtons) {
    const struct {
        NSSize fitted;
        NSRect ok;
        double cancelX;
    } rows[] = {
        {{40, 22}, {{425, 10}, {55, 27}}, 350},
        {{40.25, 20}, {{424.75, 11}, {55.25, 25}}, 349.5}, // 23 halved
        {{40, 50.75}, {{425, -3}, {55, 55.75}}, 350}, // -7.75, -7, -3
    };
    for (const auto& row : rows) {
        buttons.size = row.fitted;
        const KWHtmlModal modal({500, 400}, std::nullopt, "Yes", "No");
        EXPECT_EQ(modal.okButton()->frame(), row.ok);
        EXPECT_EQ(
            modal.cancelbutton()->frame(), (NSRect {{row.cancelX, row.ok.origin.y}, row.ok.size}));
        EXPECT_EQ(modal.htmlWebView()->frame(), NSMakeRect(0, 48, 500, 352));
    }
    buttons.size = {40, 22};
    const auto delegate = std::make_shared<NSObject>();
    const KWHtmlModal modal({500, 400}, std::nullopt, "Yes", "No", delegate);
    EXPECT_EQ(modal.htmlWebView()->policyDelegate(), delegate);
    EXPECT_EQ(modal.okButton()->title() + modal.cancelbutton()->title(), "YesNo");
    const NSView& footer = *modal.okButton()->superview();
    EXPECT_EQ(&footer.isa(), &KWOddSeparatorView::classObject());
    EXPECT_EQ(footer.frame(), NSMakeRect(0, 0, 500, 48));
    EXPECT_THAT(modal.htmlWindow()->contentView()->subviews(),
        ElementsAre(modal.htmlWebView(), modal.cancelbutton()->superview()->shared_from_this()));
    EXPECT_EQ(modal.htmlWindow()->styleMask(), NSWindowStyleMaskTitled);
    EXPECT_EQ(native(0).frame(), NSMakeRect(0, 0, 500, 422)); // not in the middle yet
    EXPECT_EQ(modal.okButton()->keyEquivalent() + modal.cancelbutton()->keyEquivalent(), "");
    EXPECT_EQ(static_cast<int>(modal.cancelbutton()->bezelStyle()), 11);
    EXPECT_FALSE(modal.htmlWebView()->mainFrame().allowsScrolling());
    EXPECT_EQ(modal.htmlWebView()->frameLoadDelegate(), nullptr);
}

TEST_F(HtmlModal, LeavesAllWebPagesRestricted) {
    auto& preferences = WebPreferences::standardPreferences();
    preferences.setJavaEnabled(true);
    preferences.setJavaScriptEnabled(true);
    preferences.setPlugInsEnabled(true);
    preferences.setCacheModel(WebCacheModel::primaryWebBrowser);
    NSURLCache::sharedURLCache().setDiskCapacity(1000);
    web.changes = 0;
    { const KWHtmlModal modal({500, 400}, std::nullopt, "", ""); }
    EXPECT_EQ(web.changes, 5);
    EXPECT_FALSE(preferences.isJavaEnabled());
    EXPECT_FALSE(preferences.isJavaScriptEnabled());
    EXPECT_FALSE(preferences.arePlugInsEnabled());
    EXPECT_EQ(preferences.cacheModel(), WebCacheModel::documentViewer);
    EXPECT_EQ(NSURLCache::sharedURLCache().diskCapacity(), 0u);
}

TEST_F(HtmlModal, ReadsFilesAsUTF16AndRequestsTheRest) {
    files.contents["/a b/page.html"] = std::string("\xFF\xFE<\0b\0>\0", 8);
    files.contents["/a b/utf8.html"] = "<p>hi!";
    files.contents["/a b/odd.html"] = "<p>hi";
    files.contents["/top.html"] = "";
    const struct {
        std::optional<std::string> url;
        std::string html;
        std::optional<std::string> base, request;
    } rows[] = {
        {std::nullopt, "", std::nullopt, std::nullopt},
        {"file:///a%20b/page.html?x#y", "<b>", "file:///a%20b/", std::nullopt},
        {"FILE://localhost/a%20b/utf8.html", "\u703C\u683E\u2169", "file:///a%20b/", std::nullopt},
        {"file:///a%20b/odd.html", "", "file:///a%20b/", std::nullopt}, // half a unit
        {"file:///a%20b/none.html", "", "file:///a%20b/", std::nullopt},
        {"file:/top.html", "", "file:///", std::nullopt},
        {"https://example.org/", "", std::nullopt, "https://example.org/"},
        {"/a b/page.html", "", std::nullopt, "/a b/page.html"}, // no file URL
    };
    for (const auto& row : rows) {
        const KWHtmlModal modal({500, 400}, row.url, "", "");
        const WebContent& content = modal.htmlWebView()->mainFrame().content();
        EXPECT_EQ(content.html, row.html) << row.url.value_or("none");
        EXPECT_EQ(content.baseURL, row.base) << row.url.value_or("none");
        EXPECT_EQ(content.request, row.request) << row.url.value_or("none");
    }

    HeadlessConsole console;
    const ServiceScope scope(console);
    web.available = false;
    const KWHtmlModal modal({500, 400}, "https://example.org/", "", "");
    EXPECT_THAT(console.lines(), ElementsAre(HasSubstr("stays empty")));
}

TEST_F(HtmlModal, ReturnsTheCodeItsSessionIsStoppedWith) {
    HeadlessApplicationService host;
    const ServiceScope scope(host);
    const auto button = [this](std::size_t index) -> NSButton& {
        auto& buttonsOf = native().window().contentView()->subviews()[1]->subviews();
        return static_cast<NSButton&>(*buttonsOf[index]);
    };
    const auto press = [&](std::size_t index) { button(index).performClick(); };
    bool wasVisible = true;
    const struct {
        std::function<void()> action;
        int code;
    } rows[] = {
        {[&] { press(0); }, 1},
        {[&] { press(1); }, 2},
        {[&] { application.stopModalWithCode(7); }, 7},
        {[&] { application.stopModal(); }, -1000},
        {[&] { application.stopModalWithCode(NSRunContinuesResponse); }, -1000},
        {[&] { native().window().performClose(); }, -1001}, // from outside
        {[&] { host.ending = true; }, -1001},
        // An inner one ends first, and leaves the outer one alone.
        {[&] {
             loop.callAfter(1, [&] { application.stopModalWithCode(9); });
             EXPECT_EQ(KWHtmlModal::htmlWindowWithSize({1, 1}, std::nullopt), 9);
             press(1);
         },
            2},
    };
    for (const auto& row : rows) {
        host.ending = false;
        loop.callAfter(1, [&] {
            EXPECT_TRUE(native().isModal);
            EXPECT_EQ(button(0).title() + button(1).title(), "OKCancel");
            EXPECT_TRUE(native().host().isKeyWindow);
            EXPECT_EQ(NSMidX(native().frame()), 640); // in the middle once it is shown
            row.action();
            wasVisible = native().isShown;
        });
        EXPECT_EQ(KWHtmlModal::htmlWindowWithSize({500, 400}, std::nullopt), row.code);
        EXPECT_EQ(application.modalWindow(), nullptr);
        EXPECT_TRUE(service.windows.empty());
    }
    EXPECT_FALSE(wasVisible); // a button closes the window
}

TEST_F(HtmlModal, LeavesTheWindowOfASessionWhereItIs) {
    NSWindow window(
        {{5, 6}, {70, 80}}, NSWindowStyleMaskTitled, NSBackingStoreType::buffered, false);
    window.orderFront();
    const NSModalSession session = application.beginModalSessionForWindow(window);
    EXPECT_EQ(window.frame().origin.x, 5); // the user had it there
    application.endModalSession(session);
    EXPECT_TRUE(native().isShown && !native().isModal);
}

TEST_F(HtmlModal, TakesThePagesTitleIfItIsTheLoadDelegate) {
    const auto modal = std::make_shared<KWHtmlModal>(NSSize {500, 400}, std::nullopt, "", "");
    WebView& view = *modal->htmlWebView();
    view.didReceiveTitle("Not yet");
    EXPECT_EQ(native().title, "");
    view.setFrameLoadDelegate(modal);
    view.didReceiveTitle("License");
    WebFrame inner(view);
    modal->webView(view, "Advertisement", inner);
    EXPECT_EQ(native().title, "License");
}

} // namespace
