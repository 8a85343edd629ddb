// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>
#include <QWebEngineUrlSchemeHandler>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace kw::qt {

/// A page that is shown under an address of the scheme.
struct PageSource {
    /// Nothing where the page is a file, the one that `url` names.
    std::optional<std::string> html;
    /// Where everybody else takes the page to be. Empty for nowhere.
    QUrl url;
};

/// Hands the engine pages that are given as text, or are files, and what they refer to.
///
/// The engine itself could show text only up to 2 MB, and lets a page from a file read every other
/// file. So each such page gets an origin of its own in a scheme of ours, below which lies what
/// lies beside its URL: of the disk just the page's folder, of the network everything.
class PageScheme final : public QWebEngineUrlSchemeHandler {
public:
    /// Before the engine starts.
    static void registerScheme();
    /// Of the default profile.
    static PageScheme& shared();

    /// Returns the address that shows the page.
    QUrl add(PageSource source);
    void remove(const QUrl& address);
    /// What an address is for everybody else; empty for nothing. Those of other schemes are that
    /// already.
    QUrl publicURL(const QUrl& address) const;

    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    struct Entry {
        PageSource source;
        QUrl address;
        std::filesystem::path folder; // without links; empty for none
    };
    const Entry* entryOf(const QUrl& address) const;
    std::optional<std::string> readFile(const Entry& entry, const QUrl& url) const;

    std::map<QString, Entry> m_entries; // by the addresses' host
    unsigned m_added = 0;
};

} // namespace kw::qt
