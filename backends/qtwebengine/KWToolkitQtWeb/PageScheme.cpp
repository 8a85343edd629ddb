// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQtWeb/PageScheme.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/FileURL.h>

#include <QBuffer>
#include <QMimeDatabase>
#include <QPointer>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

#include <utility>

namespace kw::qt {

namespace {

constexpr auto schemeName = "kwtoolkit-page";

std::string pathOf(const QUrl& fileURL) {
    return pathOfFileURL(fileURL.toEncoded().toStdString()).value_or(std::string());
}

/// Links resolved. Empty where there is nothing.
std::filesystem::path realPath(const std::string& path) {
    std::error_code error;
    return std::filesystem::canonical(path, error);
}

bool isWithin(const std::filesystem::path& path, const std::filesystem::path& folder) {
    return std::mismatch(path.begin(), path.end(), folder.begin(), folder.end()).second
        == folder.end();
}

/// By the name, as a browser without a server must; else by the content.
QByteArray mimeType(const QUrl& url, const QByteArray& content) {
    return QMimeDatabase().mimeTypeForFileNameAndData(url.fileName(), content).name().toUtf8();
}

void reply(QWebEngineUrlRequestJob& job, const QByteArray& type, const QByteArray& content) {
    auto* const buffer = new QBuffer;
    buffer->setData(content);
    QObject::connect(&job, &QObject::destroyed, buffer, &QObject::deleteLater);
    job.reply(type, buffer);
}

} // namespace

void PageScheme::registerScheme() {
    QWebEngineUrlScheme scheme(schemeName);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags({}); // above all no access to files of the disk
    QWebEngineUrlScheme::registerScheme(scheme);
}

PageScheme& PageScheme::shared() {
    static QPointer<PageScheme> scheme;
    if (!scheme) {
        QWebEngineProfile* const profile = QWebEngineProfile::defaultProfile();
        scheme = new PageScheme(profile);
        profile->installUrlSchemeHandler(schemeName, scheme);
    }
    return *scheme;
}

QUrl PageScheme::add(PageSource source) {
    const QString host = QStringLiteral("page") + QString::number(++m_added);
    QUrl address = source.url;
    address.setScheme(schemeName);
    address.setAuthority(host);
    if (address.path().isEmpty())
        address.setPath("/");
    std::filesystem::path folder;
    if (source.url.isLocalFile()) {
        const std::string path = pathOf(source.url);
        if (!source.html || path.ends_with('/'))
            folder = realPath(path.substr(0, path.rfind('/') + 1));
    }
    m_entries[host] = {std::move(source), address, std::move(folder)};
    return address;
}

void PageScheme::remove(const QUrl& address) { m_entries.erase(address.host()); }

const PageScheme::Entry* PageScheme::entryOf(const QUrl& address) const {
    const auto found =
        address.scheme() == schemeName ? m_entries.find(address.host()) : m_entries.end();
    return found == m_entries.end() ? nullptr : &found->second;
}

QUrl PageScheme::publicURL(const QUrl& address) const {
    if (address.scheme() != schemeName)
        return address;
    const Entry* const entry = entryOf(address);
    if (!entry || entry->source.url.isEmpty())
        return {};
    QUrl url = address;
    url.setScheme(entry->source.url.scheme());
    url.setAuthority(entry->source.url.authority());
    return url;
}

std::optional<std::string> PageScheme::readFile(const Entry& entry, const QUrl& url) const {
    const std::filesystem::path path = realPath(pathOf(url));
    if (entry.folder.empty() || !isWithin(path, entry.folder))
        return std::nullopt;
    return Platform::fileSystem().contentsOfFile(path);
}

void PageScheme::requestStarted(QWebEngineUrlRequestJob* job) {
    const QUrl address = job->requestUrl();
    const Entry* const entry = entryOf(address);
    // What a page of somebody else asks for is none of its business.
    const QUrl initiator = job->initiator();
    if (!entry || (!initiator.isEmpty() && initiator.host() != address.host())) {
        job->fail(QWebEngineUrlRequestJob::RequestDenied);
        return;
    }
    if (entry->source.html && address.matches(entry->address, QUrl::RemoveFragment)) {
        reply(*job, "text/html;charset=utf-8", QByteArray::fromStdString(*entry->source.html));
        return;
    }
    const QUrl url = publicURL(address);
    if (!url.isEmpty() && !url.isLocalFile()) {
        job->redirect(url);
        return;
    }
    std::optional<std::string> content;
    callGuarded([&] { content = readFile(*entry, url); });
    if (!content) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    const auto bytes = QByteArray::fromStdString(*content);
    reply(*job, mimeType(url, bytes), bytes);
}

} // namespace kw::qt
