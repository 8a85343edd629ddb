// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQtWeb/QtWebService.h>

#include <KWToolkit/platform/foundation/NSURLCache.h>
#include <KWToolkit/platform/ui/WebPreferences.h>

#include <QCoreApplication>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

#include <algorithm>
#include <limits>

namespace kw::qt {

namespace {

bool areSettingsDue = false;

using CacheType = QWebEngineProfile::HttpCacheType;

/// The engine keeps pages either in memory or on disk.
CacheType cacheType(WebCacheModel model, bool isOnDisk) {
    if (isOnDisk)
        return CacheType::DiskHttpCache;
    return model == WebCacheModel::documentViewer ? CacheType::NoCache : CacheType::MemoryHttpCache;
}

} // namespace

void QtWebService::settingsChanged() {
    areSettingsDue = true;
    applySettings();
}

void QtWebService::applySettings() {
    if (!areSettingsDue || !QCoreApplication::instance())
        return;
    areSettingsDue = false;
    const auto& preferences = WebPreferences::standardPreferences();
    const std::uint64_t capacity = NSURLCache::sharedURLCache().diskCapacity();
    QWebEngineProfile& profile = *QWebEngineProfile::defaultProfile();
    QWebEngineSettings& settings = *profile.settings();
    settings.setAttribute(QWebEngineSettings::JavascriptEnabled, preferences.isJavaScriptEnabled());
    settings.setAttribute(QWebEngineSettings::PluginsEnabled, preferences.arePlugInsEnabled());
    profile.setHttpCacheType(cacheType(preferences.cacheModel(), capacity > 0));
    // 0 lets the engine choose.
    constexpr std::uint64_t maximum = std::numeric_limits<int>::max();
    profile.setHttpCacheMaximumSize(static_cast<int>(std::min(capacity, maximum)));
}

} // namespace kw::qt
