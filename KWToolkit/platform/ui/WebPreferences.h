// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// How much web pages may keep in memory and on disk: the least first.
enum class WebCacheModel { documentViewer = 0, documentBrowser = 1, primaryWebBrowser = 2 };

/// What web pages may do. A host's choice for the process: a desktop without, say, Java does not
/// get it by setting it here. Main thread.
class KW_EXPORT WebPreferences {
public:
    /// Of every web page that is shown, now or later.
    static WebPreferences& standardPreferences();

    WebCacheModel cacheModel() const { return m_cacheModel; }
    void setCacheModel(WebCacheModel model) { set(m_cacheModel, model); }
    bool isJavaEnabled() const { return m_isJavaEnabled; }
    void setJavaEnabled(bool enabled) { set(m_isJavaEnabled, enabled); }
    bool isJavaScriptEnabled() const { return m_isJavaScriptEnabled; }
    void setJavaScriptEnabled(bool enabled) { set(m_isJavaScriptEnabled, enabled); }
    bool arePlugInsEnabled() const { return m_arePlugInsEnabled; }
    void setPlugInsEnabled(bool enabled) { set(m_arePlugInsEnabled, enabled); }

private:
    WebPreferences() = default;
    template <class T>
    void set(T& member, T value) {
        if (member == value)
            return;
        member = value;
        changed();
    }
    static void changed();

    WebCacheModel m_cacheModel = WebCacheModel::documentBrowser;
    bool m_isJavaEnabled = true;
    bool m_isJavaScriptEnabled = true;
    bool m_arePlugInsEnabled = true;
};

} // namespace kw
