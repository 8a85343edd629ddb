// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/WebView.h>

#include <QDateTime>
#include <QWebEnginePage>

#include <functional>

namespace kw::qt {

/// What a `WebView` shows. It can go nowhere by itself and opens nothing.
class WebPage final : public QWebEnginePage {
public:
    explicit WebPage(WebView& view);
    ~WebPage() override;

    void show(const WebContent& content);
    /// An empty page, of which nobody is told.
    void showNothing();
    void setAllowsScrolling(bool allows);
    /// The view goes: nothing is told or asked any more.
    void leave() { m_view = nullptr; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override {
        return {};
    }
    void javaScriptAlert(const QUrl&, const QString&) override { }
    bool javaScriptConfirm(const QUrl&, const QString&) override { return false; }
    bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override {
        return false;
    }
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override { }

private:
    /// Calls the view, which may make the page leave.
    void tell(const std::function<void(WebView&)>& task);
    QUrl addressOf(const WebContent& content);
    /// When the page that is shown arrived.
    QDateTime visited() const;

    void finished(bool isLoaded);
    void titled(const QString& title);

    WebView* m_view; // null once it is gone
    QUrl m_source; // in our scheme
    QDateTime m_visitedBefore; // the page before the one that was let load last
    bool m_isInvalid = false;
    QString m_title;
};

} // namespace kw::qt
