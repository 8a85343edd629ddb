// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessUrlEventService.h>

#include <KWToolkit/platform/foundation/NSAppleEventManager.h>

namespace kw {

bool HeadlessUrlEventService::listen() { return m_isListening = !hasOtherProcess; }

UrlReception HeadlessUrlEventService::receive(const std::vector<std::string>& urls) {
    if (!listen()) {
        sentElsewhere.insert(sentElsewhere.end(), urls.begin(), urls.end());
        return UrlReception::elsewhere;
    }
    for (const std::string& url : urls)
        open(url);
    return UrlReception::here;
}

bool HeadlessUrlEventService::open(const std::string& url) {
    if (m_isListening)
        NSAppleEventManager::sharedAppleEventManager().dispatch(
            {kInternetEventClass, kAEGetURL, url});
    return m_isListening;
}

} // namespace kw
