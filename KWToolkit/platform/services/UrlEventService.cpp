// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/UrlEventService.h>

#include <KWToolkit/platform/foundation/NSAppleEventManager.h>

namespace kw {

UrlEventService::~UrlEventService() = default;

UrlReception ArgumentUrlEventService::receive(const std::vector<std::string>& urls) {
    for (const std::string& url : urls)
        NSAppleEventManager::sharedAppleEventManager().dispatch(
            {kInternetEventClass, kAEGetURL, url});
    return UrlReception::argumentsOnly;
}

} // namespace kw
