// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQtWeb/WebPage.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkitQtWeb/PageScheme.h>

#include <QCoreApplication>
#include <QPointer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

#include <cstring>
#include <utility>

namespace kw::qt {

namespace {

WebNavigationType typeOf(QWebEnginePage::NavigationType type) {
    switch (type) {
    case QWebEnginePage::NavigationTypeLinkClicked:
        return WebNavigationType::linkClicked;
    case QWebEnginePage::NavigationTypeFormSubmitted:
        return WebNavigationType::formSubmitted;
    case QWebEnginePage::NavigationTypeBackForward:
        return WebNavigationType::backForward;
    case QWebEnginePage::NavigationTypeReload:
        return WebNavigationType::reload;
    default:
        return WebNavigationType::other;
    }
}

/// What the engine takes for the title of a page that has none.
bool isAddress(const QString& title, const QUrl& url) {
    const auto plain = [](QString text) {
        text = QUrl::fromPercentEncoding(text.toUtf8());
        for (const auto* const beginning : {"http://", "https://"}) {
            if (text.startsWith(QLatin1String(beginning)))
                text.remove(0, static_cast<int>(std::strlen(beginning)));
        }
        return text.endsWith('/') ? text.chopped(1) : text;
    };
    return plain(title) == plain(url.toString());
}

/// Neither the user nor the page itself can scroll. It runs where scripts of the page may not.
QWebEngineScript scrollLock() {
    QWebEngineScript script;
    script.setName(QStringLiteral("scroll lock"));
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setSourceCode(QStringLiteral(
        "document.documentElement.style.setProperty('overflow', 'hidden', 'important');"
        "addEventListener('scroll', () => scrollTo(0, 0));"
        "scrollTo(0, 0);"));
    return script;
}

/// Owns the pages that are still there when the application ends: they go before the engine,
/// as long as that was there first.
QObject& remainingPages() {
    static QPointer<QObject> pages;
    if (!pages) {
        pages = new QObject;
        qAddPostRoutine([] { delete pages; });
    }
    return *pages;
}

} // namespace

WebPage::WebPage(WebView& view)
    : QWebEnginePage(QWebEngineProfile::defaultProfile())
    , m_view(&view) {
    setParent(&remainingPages());
    PageScheme::shared();
    QWebEngineSettings& own = *settings();
    own.setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    own.setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, false);
    own.setAttribute(QWebEngineSettings::FullScreenSupportEnabled, false);
    own.setAttribute(QWebEngineSettings::NavigateOnDropEnabled, false);
    own.setUnknownUrlSchemePolicy(QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
    connect(this, &QWebEnginePage::loadFinished, this, &WebPage::finished);
    connect(this, &QWebEnginePage::titleChanged, this, &WebPage::titled);
    connect(profile(), &QWebEngineProfile::downloadRequested, this,
        [this](QWebEngineDownloadRequest* download) {
            if (download->page() == this)
                download->cancel();
        });
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
        [this](const QUrl& origin, Feature feature) {
            setFeaturePermission(origin, feature, PermissionDeniedByUser);
        });
    connect(this, &QWebEnginePage::newWindowRequested, this,
        [this](const QWebEngineNewWindowRequest& request) {
            const auto url = PageScheme::shared().publicURL(request.requestedUrl());
            const std::string address = url.toEncoded().toStdString();
            tell([&](WebView& shown) {
                shown.wantsWindow({WebNavigationType::linkClicked, address}, address, {});
            });
        });
}

WebPage::~WebPage() { PageScheme::shared().remove(m_source); }

void WebPage::tell(const std::function<void(WebView&)>& task) {
    if (!m_view)
        return;
    const std::shared_ptr<NSObject> alive = m_view->weak_from_this().lock();
    callGuarded([&] { task(*m_view); });
}

QUrl WebPage::addressOf(const WebContent& content) {
    auto& scheme = PageScheme::shared();
    if (!content.request) {
        const auto base = QByteArray::fromStdString(content.baseURL.value_or(std::string()));
        return scheme.add({content.html, QUrl::fromEncoded(base)});
    }
    const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(*content.request));
    return url.isLocalFile() ? scheme.add({std::nullopt, url}) : url;
}

void WebPage::show(const WebContent& content) {
    PageScheme::shared().remove(std::exchange(m_source, addressOf(content)));
    m_title.clear();
    m_isInvalid = !m_source.isValid() || m_source.isRelative();
    m_visitedBefore = visited();
    load(m_isInvalid ? QUrl("about:blank") : m_source);
}

QDateTime WebPage::visited() const { return history()->currentItem().lastVisited(); }

void WebPage::showNothing() { load(QUrl("about:blank")); }

void WebPage::setAllowsScrolling(bool allows) {
    if (settings()->testAttribute(QWebEngineSettings::ShowScrollBars) == allows)
        return;
    settings()->setAttribute(QWebEngineSettings::ShowScrollBars, allows);
    scripts().clear();
    if (!allows)
        scripts().insert(scrollLock());
}

bool WebPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (!m_view)
        return false;
    if (type == NavigationTypeTyped)
        return true; // asked for by the program
    if (type == NavigationTypeRedirect && isMainFrame && visited() == m_visitedBefore)
        return true; // the server says where it is
    if (!isMainFrame && type == NavigationTypeOther)
        return true; // a part of the page
    const auto target = PageScheme::shared().publicURL(url);
    if (isMainFrame && url.hasFragment() && url.matches(this->url(), QUrl::RemoveFragment))
        return true; // a place in the page
    const std::string address = target.toEncoded().toStdString();
    bool isAllowed = false;
    tell([&](WebView& view) {
        isAllowed = view.decidesToNavigate({typeOf(type), address}, address);
    });
    if (isAllowed && isMainFrame && m_view)
        m_visitedBefore = visited();
    return isAllowed;
}

void WebPage::finished(bool isLoaded) {
    if (m_source.isEmpty() && !m_isInvalid)
        return;
    tell([&](WebView& view) { view.didFinishLoad(isLoaded && !m_isInvalid); });
}

void WebPage::titled(const QString& title) {
    if (!isAddress(title, url()) && std::exchange(m_title, title) != title)
        tell([&](WebView& view) { view.didReceiveTitle(title.toStdString()); });
}

} // namespace kw::qt
