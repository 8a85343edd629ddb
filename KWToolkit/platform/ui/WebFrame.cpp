// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/WebFrame.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/WebView.h>

#include <utility>

namespace kw {

Class& WebFrame::classObject() {
    static auto& object = *new Class("WebFrame", NSObject::classObject());
    return object;
}

void WebFrame::loadHTMLString(std::string html, std::optional<std::string> baseURL) {
    load({std::move(html), std::move(baseURL), std::nullopt});
}

void WebFrame::loadRequest(std::string url) { load({{}, std::nullopt, std::move(url)}); }

void WebFrame::load(WebContent content) {
    if (!Platform::web().isAvailable())
        Platform::console().writeLine("No web pages here: the view stays empty");
    m_content = std::move(content);
    ++m_loadCount;
    m_webView.frameChanged();
}

void WebFrame::setAllowsScrolling(bool allows) {
    m_allowsScrolling = allows;
    m_webView.frameChanged();
}

} // namespace kw
