// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQtWeb/WebViewPeer.h>

#include <KWToolkit/platform/ui/WebView.h>
#include <KWToolkitQtWeb/QtWebService.h>
#include <KWToolkitQtWeb/WebPage.h>

#include <QPointer>
#include <QWebEngineView>

namespace kw::qt {

namespace {

class WebViewPeer final : public ViewPeer {
public:
    WebViewPeer(WebView& view, QWidget& parent)
        : m_view(view)
        , m_page(new WebPage(view))
        , m_widget(*new QWebEngineView(&parent)) {
        m_widget.setPage(m_page);
        // Not before: a widget without a page makes one of its own. And it may be the page that
        // ends it.
        QObject::connect(&m_widget, &QObject::destroyed, m_page, &QObject::deleteLater);
        m_widget.setFocusPolicy(Qt::ClickFocus);
        m_widget.setAcceptDrops(false);
        m_widget.addAction(m_widget.pageAction(QWebEnginePage::Copy));
        m_widget.setContextMenuPolicy(Qt::ActionsContextMenu);
        // Where nothing is loaded the engine would begin later, and make the window anew for that.
        if (m_view.mainFrame().loadCount() == 0)
            m_page->showNothing();
        load();
    }
    ~WebViewPeer() override {
        if (m_page)
            m_page->leave();
    }

    QWidget& widget() override { return m_widget; }
    void update() override { load(); }

private:
    void load() {
        if (!m_page)
            return;
        const WebFrame& frame = m_view.mainFrame();
        m_page->setAllowsScrolling(frame.allowsScrolling());
        if (m_loadCount == frame.loadCount())
            return;
        m_loadCount = frame.loadCount();
        m_page->show(frame.content());
    }

    WebView& m_view;
    const QPointer<WebPage> m_page; // null once the application ends
    QWebEngineView& m_widget;
    std::uint64_t m_loadCount = 0;
};

} // namespace

std::unique_ptr<ViewPeer> makeWebViewPeer(NSView& view, QWidget& parent) {
    QtWebService::applySettings();
    return std::make_unique<WebViewPeer>(static_cast<WebView&>(view), parent);
}

} // namespace kw::qt
