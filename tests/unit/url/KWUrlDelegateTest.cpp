// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/KWUrlDelegate.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>
#include <KWToolkit/platform/headless/HeadlessUrlEventService.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <KWToolkit/url/KWMailUtils.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::IsEmpty;
using Words = std::vector<std::string>;

class Listener : public NSObject {
public:
    static Class& classObject() {
        static Class object("Listener", NSObject::classObject(),
            {
                method("open:", &Listener::open),
                method("mismatch:", [](Listener&, int) {}),
                method("throw:", [](Listener&, Words) { throw std::runtime_error("no disk"); }),
                method("throwObject:", [](Listener&, Words) { throw 42; }),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }
    std::string description() const override { return "<a listener>"; }

    void open(Words& words) {
        calls.push_back(words);
        words.clear(); // the list is the listener's own
    }

    std::vector<Words> calls;
};

class ListenerWithFallback final : public Listener {
public:
    static Class& classObject() {
        static Class object("ListenerWithFallback", Listener::classObject(),
            {method("unhandledUrlCall:", &ListenerWithFallback::unhandledUrlCall)});
        return object;
    }
    Class& isa() const override { return classObject(); }
    void unhandledUrlCall(std::string url) { calls.push_back({"unhandled", std::move(url)}); }
};

class KWUrlDelegateTest : public testing::Test {
protected:
    HeadlessClock clock;
    HeadlessRunLoop loop {clock};
    HeadlessConsole console;
    HeadlessUrlEventService urls;
    const ServiceScope<HeadlessRunLoop> loopScope {loop};
    const ServiceScope<HeadlessConsole> consoleScope {console};
    const ServiceScope<HeadlessUrlEventService> urlsScope {urls};
};

TEST_F(KWUrlDelegateTest, SendsTheCommandWithItsParameters) {
    Listener listener;
    const auto dispatcher = KWUrlDelegate::KWUrlDelegateWithListener(listener);
    for (const char* url : {"app://open&!p!&a%20b&!p!&c", "app://open", "app://unknown&!p!&a",
             "app://Open", "app://", "app://open:"})
        EXPECT_TRUE(urls.open(url));
    EXPECT_THAT(listener.calls, ElementsAre(Words {"a%20b", "c"}, Words()));
    EXPECT_THAT(console.lines(), IsEmpty());
    dispatcher->setDelegate(nullptr);
    urls.open("app://open");
    EXPECT_EQ(listener.calls.size(), 2u);
}

TEST_F(KWUrlDelegateTest, TellsTheConsoleAndTheFallbackWhatFailed) {
    const auto told = [](NSObject* listener, const std::string& url) {
        HeadlessConsole lines;
        const ServiceScope scope(lines);
        KWUrlDelegate(listener).urlDelegateManager({kInternetEventClass, kAEGetURL, url}, {});
        return lines.lines();
    };
    const std::pair<std::string, const char*> rows[] = {
        {"app:refresh", ".+"},
        {"app://throw&!p!&x", "no disk"},
        {"app://mismatch", ".*the method's encoding is .+"},
    };
    Listener plain;
    ListenerWithFallback withFallback;
    for (const auto& [url, reason] : rows) {
        const auto first = testing::MatchesRegex(
            "error in the url management with url: " + url + " \nexception: " + reason);
        EXPECT_THAT(
            told(&plain, url), ElementsAre(first, "listener <a listener>", "dont get selector"));
        EXPECT_THAT(told(&withFallback, url),
            ElementsAre(first, "listener <a listener>", "before call", "after call"));
        EXPECT_EQ(withFallback.calls.back(), (Words {"unhandled", url}));
    }
    EXPECT_EQ(told(nullptr, "app:refresh")[1], "listener (null)");
    const KWUrlDelegate dispatcher(plain);
    EXPECT_THROW(urls.open("app://throwObject"), int);
    EXPECT_THAT(console.lines(), IsEmpty());
}

TEST_F(KWUrlDelegateTest, URLsWaitForTheDispatcherThatIsMadeLast) {
    urls.receive({"app://open&!p!&1", "app://open&!p!&2"});
    Listener first;
    Listener second;
    {
        std::optional<KWUrlDelegate> former(first);
        EXPECT_THAT(first.calls, IsEmpty()); // not in its constructor
        urls.open("app://open&!p!&3"); // not before the others
        loop.advance(0);
        loop.advance(0);
        loop.advance(0);
        EXPECT_THAT(first.calls, ElementsAre(Words {"1"}, Words {"2"}, Words {"3"}));
        const KWUrlDelegate latter(second);
        urls.open("app://open&!p!&4");
        former.reset();
        urls.open("app://open&!p!&5");
        EXPECT_THAT(second.calls, ElementsAre(Words {"4"}, Words {"5"}));
    }
    urls.open("app://open&!p!&6");
    const KWUrlDelegate next(first);
    loop.advance(0);
    EXPECT_EQ(first.calls.back(), Words {"6"});
    EXPECT_EQ(second.calls.size(), 2u);
}

TEST_F(KWUrlDelegateTest, NamesFromURLsAreNotKept) {
    Listener listener;
    const KWUrlDelegate dispatcher(listener);
    urls.open("app://neverHeardOf");
    EXPECT_FALSE(SEL::existing("neverHeardOf:"));
    EXPECT_EQ(SEL::existing("open:"), SEL("open:"));
}

TEST(KWMailUtils, EscapesOnlyWhatNoURLMayHold) {
    HeadlessWorkspace workspace;
    const ServiceScope scope(workspace);
    const struct {
        const char* receiver;
        const char* subject;
        const char* body;
        const char* link;
    } rows[] = {
        {"someone", "Hi there", "Line", "someone?SUBJECT=Hi%20there&BODY=Line"},
        {"a@b.c", "", "", "a@b.c?SUBJECT=&BODY="},
        {"x", "a&b=c?d/e+f", "!*'();:@&=+$,/?-._~",
            "x?SUBJECT=a&b=c?d/e+f&BODY=!*'();:@&=+$,/?-._~"},
        {"x", "<>#%\"{}|\\^[]`", "a\r\n\x7F",
            "x?SUBJECT=%3C%3E%23%25%22%7B%7D%7C%5C%5E%5B%5D%60&BODY=a%0D%0A%7F"},
        {"x", "é", "b", "x?SUBJECT=(null)&BODY=b"},
    };
    for (const auto& row : rows) {
        KWMailUtils::openMailWithReceiver(row.receiver, row.subject, row.body);
        EXPECT_EQ(workspace.openedURLs.back(), "mailto:" + std::string(row.link));
    }
    HeadlessMainBundle bundle;
    bundle.values.name = "Notes";
    bundle.values.version = "2.1";
    const ServiceScope bundleScope(bundle);
    KWMailUtils::sendFeedBackEmailTo("me@x.y");
    EXPECT_EQ(workspace.openedURLs.back(),
        "mailto:me@x.y?SUBJECT=Notes%20(2.1)%20feedback&BODY=Your%20feedback%20here...");
}

} // namespace
