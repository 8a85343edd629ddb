// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQtWeb/QtWeb.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/WebView.h>
#include <KWToolkitQt/ViewPeer.h>
#include <KWToolkitQtWeb/PageScheme.h>
#include <KWToolkitQtWeb/QtWebService.h>
#include <KWToolkitQtWeb/WebViewPeer.h>

#include <memory>

namespace kw::qt {

void useQtWeb() {
    // Once: a factory that the host sets later is not replaced.
    [[maybe_unused]] static const bool isDone = [] {
        PageScheme::registerScheme();
        setServiceFactory<WebService>([] { return std::make_unique<QtWebService>(); });
        registerViewPeer(WebView::classObject(), makeWebViewPeer);
        return true;
    }();
}

namespace {

[[maybe_unused]] const bool isUsedOnceLoaded = (useQtWeb(), true);

} // namespace

} // namespace kw::qt
