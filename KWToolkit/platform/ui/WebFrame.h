// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kw {

class WebView;

/// What a frame is to show.
struct WebContent {
    /// A page's source, in UTF-8; empty text where `request` is what to show.
    std::string html;
    /// Against what the page's relative addresses are resolved.
    std::optional<std::string> baseURL;
    /// The address of the page; empty where it is given as `html`.
    std::optional<std::string> request;
};

/// A part of a web view that shows a page: the whole of it, the main frame, or one within another.
/// Main thread.
class KW_EXPORT WebFrame : public NSObject {
public:
    /// Of a view that outlives it.
    explicit WebFrame(WebView& webView)
        : m_webView(webView) { }

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    WebView& webView() const { return m_webView; }

    /// Shows a page that is given as text. Where its base is a folder ("file:///a/b/"), it can read
    /// what is in that and in the folders below it, and no other file. Links of a page whose base
    /// is no folder can read no file at all.
    void loadHTMLString(std::string html, std::optional<std::string> baseURL);
    /// Shows the page at an address.
    void loadRequest(std::string url);

    /// Whether what is larger than the frame can be scrolled; else it is cut off.
    bool allowsScrolling() const { return m_allowsScrolling; }
    void setAllowsScrolling(bool allows);

    /// For whoever shows it: what was asked for last, and how often something was.
    const WebContent& content() const { return m_content; }
    std::uint64_t loadCount() const { return m_loadCount; }

private:
    void load(WebContent content);

    WebView& m_webView;
    WebContent m_content;
    std::uint64_t m_loadCount = 0;
    bool m_allowsScrolling = true;
};

} // namespace kw
