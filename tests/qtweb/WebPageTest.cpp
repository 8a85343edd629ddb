// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Pages in the real engine: what they show, what they can reach and where they can go.
#include <KWToolkit/platform/foundation/FileURL.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/ui/WebPreferences.h>
#include <KWToolkit/platform/ui/WebView.h>
#include <KWToolkitQt/ViewWidget.h>
#include <KWToolkitQtWeb/QtWeb.h>
#include <tests/support/PumpUntil.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QWheelEvent>

#include <filesystem>
#include <functional>
#include <map>

#include <unistd.h>

namespace {

using namespace kw;
using kw::test::pumpUntil;
using testing::ElementsAre;
using testing::IsEmpty;

using Asked = std::vector<std::string>;

/// Keeps what a view tells and asks its delegates.
struct Delegate : NSObject {
    static Class& classObject() {
        static auto& object = *new Class("Delegate", NSObject::classObject(),
            {
                method("webView:didReceiveTitle:forFrame:", &Delegate::title),
                method("webView:didFinishLoadForFrame:", &Delegate::finished),
                method("webView:didFailLoadForFrame:", &Delegate::failed),
                method("webView:decidePolicyForNavigationAction:request:frame:decisionListener:",
                    &Delegate::navigates),
                method("webView:decidePolicyForNewWindowAction:request:newFrameName:"
                       "decisionListener:",
                    &Delegate::opens),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }

    void title(WebView&, const std::string& title, WebFrame&) { titles.push_back(title); }
    void finished(WebView&, WebFrame&) { loads += 1; }
    void failed(WebView&, WebFrame&) { failures += 1; }
    void navigates(WebView&, const WebNavigationAction& action, const std::string& url, WebFrame&,
        WebPolicyDecisionListener& listener) {
        const char* const kind = action.type == WebNavigationType::linkClicked ? "" : "not a link ";
        asked.push_back(kind + url);
        if (whenAsked)
            whenAsked();
        if (isAllowing)
            listener.use();
    }
    void opens(WebView&, const WebNavigationAction&, const std::string& url, const std::string&,
        WebPolicyDecisionListener& listener) {
        asked.push_back("window " + url);
        listener.use();
    }

    Asked titles;
    Asked asked;
    int loads = 0;
    int failures = 0;
    bool isAllowing = false;
    std::function<void()> whenAsked;
};

/// Answers every path it knows, and counts what it was asked for.
class Server : public QTcpServer {
public:
    explicit Server(std::map<std::string, std::string> answers)
        : m_answers(std::move(answers)) {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(*socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        });
    }
    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(serverPort()) + path;
    }
    std::map<std::string, int> requests;

private:
    void answer(QTcpSocket& socket) {
        const std::string path = socket.readAll().split(' ').value(1).toStdString();
        requests[path] += 1;
        const auto found = m_answers.find(path);
        socket.write(QByteArray::fromStdString(found == m_answers.end()
                ? "HTTP/1.1 404 None\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"
                : found->second));
        socket.disconnectFromHost();
    }
    std::map<std::string, std::string> m_answers;
};

std::string answer(const std::string& html, const std::string& type = "text/html") {
    return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: " + type
        + "\r\nContent-Length: " + std::to_string(html.size()) + "\r\n\r\n" + html;
}

/// A view 300 x 200 in a window.
struct WebPageTest : testing::Test {
    WebPageTest() {
        view->mainFrame().setAllowsScrolling(false);
        view->setFrameLoadDelegate(delegate);
        view->setPolicyDelegate(delegate);
        widget = std::make_unique<qt::ViewWidget>(view);
        widget->show();
    }

    static WebPreferences& preferences() { return WebPreferences::standardPreferences(); }
    WebFrame& frame() { return view->mainFrame(); }

    /// Whether the page came.
    bool waitForLoad(const std::function<void()>& load) {
        const int loads = delegate->loads;
        const int ended = loads + delegate->failures;
        load();
        EXPECT_TRUE(pumpUntil([&] { return delegate->loads + delegate->failures > ended; }));
        return delegate->loads > loads;
    }
    bool show(const std::string& html, std::optional<std::string> base = std::nullopt) {
        return waitForLoad([&] { frame().loadHTMLString(html, std::move(base)); });
    }
    bool request(const std::string& url) {
        return waitForLoad([&] { frame().loadRequest(url); });
    }

    QColor colorAt(int x, int y) { return widget->grab().toImage().pixelColor(x, y); }
    bool becomes(int x, int y, QColor color) {
        return pumpUntil([&] { return colorAt(x, y) == color; });
    }
    /// What the mouse and the keys go to.
    QWidget& engineWidget() {
        QWidget* const found = widget->childAt(150, 100);
        return found->focusProxy() ? *found->focusProxy() : *found;
    }
    void click(int x, int y) { QTest::mouseClick(&engineWidget(), Qt::LeftButton, {}, {x, y}); }

    static std::string box(const std::string& color) {
        return "<body style='margin:0'><div style='height:100px;background:" + color + "'></div>";
    }

    std::shared_ptr<WebView> view = std::make_shared<WebView>(NSMakeRect(0, 0, 300, 200));
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    std::unique_ptr<qt::ViewWidget> widget;
    const test::TemporaryFolder folder;
};

const QColor red(255, 0, 0);
const QColor blue(0, 0, 255);
const QColor white(255, 255, 255);

TEST_F(WebPageTest, APageReadsWhatLiesBesideIt) {
    QImage picture(50, 50, QImage::Format_RGB32);
    picture.fill(blue);
    picture.save(QString::fromStdString(folder.path("a%20 b.png")));
    folder.write("style.css", "body { margin: 0; background: red }");
    const std::string html = "<link rel=stylesheet href=style.css><title>Terms</title>"
                             "<img src='a%2520%20b.png'>";
    folder.write("page.html", html);

    ASSERT_TRUE(show(html, fileURLOfPath(folder.path() + "/")));
    EXPECT_TRUE(becomes(25, 25, blue));
    EXPECT_TRUE(becomes(150, 100, red));
    EXPECT_THAT(delegate->titles, ElementsAre("Terms"));

    ASSERT_TRUE(show(std::string(3'000'000, ' ') + box("red")));
    EXPECT_TRUE(becomes(150, 150, white));
    EXPECT_TRUE(becomes(150, 50, red));

    ASSERT_TRUE(request(fileURLOfPath(folder.path("page.html"))));
    EXPECT_TRUE(becomes(25, 25, blue));
    EXPECT_TRUE(becomes(150, 100, red));
}

/// Every one is a picture or a page that would fill the view.
TEST_F(WebPageTest, APageReadsNoFileElsewhere) {
    const std::string page = box("red");
    folder.write("outside.html", page);
    folder.write("inside/below/seen.html", page);
    std::filesystem::create_symlink(folder.path("outside.html"), folder.path("inside/link.html"));
    const std::string base = fileURLOfPath(folder.path("inside") + "/");
    const auto frameOf = [](const std::string& address) {
        return "<body style='margin:0;background:blue'><iframe style='border:0;display:block' "
               "width=300 height=100 src='"
            + address + "'></iframe>";
    };
    ASSERT_TRUE(show(frameOf("below/seen.html"), base));
    EXPECT_TRUE(becomes(150, 50, red));

    const std::string outside = fileURLOfPath(folder.path("outside.html"));
    ASSERT_TRUE(show(page, base)); // its address could be guessed
    for (const std::string address : {"../outside.html", "..%2foutside.html", "link.html", ".",
             "//page1/x.html", "kwtoolkit-page://page1/", outside.c_str()}) {
        show(frameOf(address), base);
        EXPECT_TRUE(becomes(150, 150, blue));
        QTest::qWait(50);
        EXPECT_NE(colorAt(150, 50), red) << address;
    }
    // A page that lies in no folder reads none.
    show(frameOf(outside));
    QTest::qWait(50);
    EXPECT_NE(colorAt(150, 50), red);
    EXPECT_FALSE(request(fileURLOfPath(folder.path("missing.html"))));
    EXPECT_FALSE(request(fileURLOfPath(folder.path())));
}

TEST_F(WebPageTest, WhatIsTallerIsCutOff) {
    const std::string tall = box("red")
        + "<a href='#end' style='position:absolute;left:0;top:0;width:40px;height:40px'></a>"
          "<div id=end style='height:900px;background:blue'>text</div>";
    const std::string field = "<input autofocus>";
    preferences().setJavaScriptEnabled(false);
    ASSERT_TRUE(show(tall + field));
    ASSERT_TRUE(becomes(150, 50, red));
    EXPECT_EQ(colorAt(297, 20), red) << "no scroll bar";
    click(20, 20);
    for (const auto key : {Qt::Key_PageDown, Qt::Key_Space, Qt::Key_Down, Qt::Key_Tab})
        QTest::keyClick(&engineWidget(), key);
    QWheelEvent wheel({150, 100}, {150, 100}, {}, {0, -240}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&engineWidget(), &wheel);
    QTest::qWait(500);
    EXPECT_EQ(colorAt(150, 50), red);
    preferences().setJavaScriptEnabled(true);

    frame().setAllowsScrolling(true);
    ASSERT_TRUE(show(tall));
    ASSERT_TRUE(becomes(150, 50, red));
    EXPECT_TRUE(pumpUntil([&] { return colorAt(297, 20) != red; }));
    click(20, 20);
    EXPECT_TRUE(becomes(150, 50, blue));
}

TEST_F(WebPageTest, ALinkAsksAndGoesNowhereUnlessAllowed) {
    const std::string base = fileURLOfPath(folder.path() + "/");
    folder.write("next page.html", box("blue"));
    const auto link = [](const std::string& attributes) {
        return box("red") + "<a style='position:absolute;inset:0' " + attributes + "></a>";
    };
    ASSERT_TRUE(show(link("href='next%20page.html?a=1'"), base));
    ASSERT_TRUE(becomes(150, 50, red));
    click(50, 50);
    EXPECT_TRUE(pumpUntil([&] { return !delegate->asked.empty(); }));
    EXPECT_THAT(delegate->asked, ElementsAre(base + "next%20page.html?a=1"));
    QTest::qWait(50);
    EXPECT_EQ(colorAt(150, 50), red);

    for (const std::string address : {"mailto:a@b.c", "http://127.0.0.1:1/"}) {
        delegate->asked.clear();
        ASSERT_TRUE(show(link("href='" + address + "'"), base));
        click(50, 50);
        EXPECT_TRUE(pumpUntil([&] { return !delegate->asked.empty(); })) << address;
        EXPECT_THAT(delegate->asked, ElementsAre(address));
    }
    delegate->asked.clear();
    ASSERT_TRUE(show(link("target=_blank href=x.html"), base));
    click(50, 50);
    EXPECT_TRUE(pumpUntil([&] { return !delegate->asked.empty(); }));
    EXPECT_THAT(delegate->asked, ElementsAre("window " + base + "x.html"));

    // What leaves by itself is no link.
    folder.write("x.html", box("blue"));
    for (const std::string leaving :
        {"<meta http-equiv=refresh content='0;url=x.html'>", "<script>location = 'x.html'</script>",
            "<iframe src=next.html></iframe>"
            "<script>frames[0].location = 'x.html'</script>"}) {
        delegate->asked.clear();
        show(box("red") + leaving, base);
        EXPECT_TRUE(pumpUntil([&] { return !delegate->asked.empty(); })) << leaving;
        EXPECT_THAT(delegate->asked, ElementsAre("not a link " + base + "x.html")) << leaving;
        QTest::qWait(50);
        EXPECT_TRUE(becomes(150, 50, red));
    }

    delegate->isAllowing = true;
    ASSERT_TRUE(show(link("href='next%20page.html?a=1'"), base));
    EXPECT_TRUE(becomes(150, 50, red));
    EXPECT_TRUE(waitForLoad([&] { click(50, 50); }));
    EXPECT_TRUE(becomes(150, 50, blue));
}

TEST_F(WebPageTest, ADelegateMayThrowOrEndTheView) {
    const std::string link = box("red") + "<a style='position:absolute;inset:0' href=x:y></a>";
    delegate->whenAsked = [] { throw std::runtime_error("asked"); };
    ASSERT_TRUE(show(link));
    click(50, 50);
    EXPECT_TRUE(pumpUntil([&] { return !delegate->asked.empty(); }));
    delegate->whenAsked = [&] {
        widget.reset();
        view.reset();
    };
    ASSERT_TRUE(show(link));
    click(50, 50);
    EXPECT_TRUE(pumpUntil([&] { return !widget; }));
    QTest::qWait(100);
}

TEST_F(WebPageTest, PagesOfTheNetworkAndTheirTitles) {
    folder.write("secret.html", box("red"));
    const std::string secret = fileURLOfPath(folder.path("secret.html"));
    Server server({
        {"/plain", answer(box("blue"))},
        {"/moved",
            "HTTP/1.1 302 Moved\r\nLocation: /plain\r\nContent-Length: 0\r\n"
            "Connection: close\r\n\r\n"},
        {"/blue.css", answer("body { background: blue }", "text/css")},
        {"/curious",
            answer("<title>Curious</title><body style='margin:0'><iframe width=300 "
                   "height=200 src='"
                + secret + "'></iframe>")},
        {"/file", answer("data", "application/octet-stream")},
        {"/locked",
            "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=x\r\nContent-Length: 0\r\n"
            "Connection: close\r\n\r\n"},
    });
    ASSERT_TRUE(request(server.url("/moved")));
    EXPECT_TRUE(becomes(150, 50, blue));
    EXPECT_THAT(delegate->asked, IsEmpty());
    EXPECT_THAT(delegate->titles, IsEmpty());
    ASSERT_TRUE(show("<link rel=stylesheet href='blue.css'>", server.url("/folder")));
    EXPECT_TRUE(becomes(150, 150, blue));
    ASSERT_TRUE(request(server.url("/curious")));
    EXPECT_TRUE(becomes(150, 50, white));
    EXPECT_THAT(delegate->titles, ElementsAre("Curious"));
    for (const std::string& url : {server.url("/file"), server.url("/locked"), server.url("/none"),
             std::string("http://127.0.0.1:1/"), std::string("relative"), std::string()})
        EXPECT_FALSE(request(url)) << url;
    EXPECT_TRUE(pumpUntil([] { return !QApplication::activeModalWidget(); })) << "no dialog asks";
}

TEST_F(WebPageTest, ScriptsRunAsThePreferencesSay) {
    const std::string page = box("red")
        + "<script>document.body.innerHTML = '';"
          "document.body.style.background = 'blue'</script>";
    ASSERT_TRUE(show(page));
    EXPECT_TRUE(becomes(150, 50, blue));
    preferences().setJavaScriptEnabled(false);
    ASSERT_TRUE(show(page));
    EXPECT_TRUE(becomes(150, 50, red));
    preferences().setJavaScriptEnabled(true);
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    if (::geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // else the engine does not run
    qt::useQtWeb();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
