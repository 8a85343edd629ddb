// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// Whoever shows web pages. Main thread.
class KW_EXPORT WebService {
public:
    virtual ~WebService();

    /// Whether a `WebView` shows the page it is given.
    virtual bool isAvailable() const = 0;
    /// `WebPreferences::standardPreferences()` or `NSURLCache::sharedURLCache()` has changed: from
    /// now on that holds for every web page of the process.
    virtual void settingsChanged() = 0;
};

/// Where there are no web pages: every view of one stays empty.
class KW_EXPORT UnavailableWebService final : public WebService {
public:
    bool isAvailable() const override { return false; }
    void settingsChanged() override { }
};

} // namespace kw
