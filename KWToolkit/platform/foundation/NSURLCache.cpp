// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSURLCache.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

NSURLCache& NSURLCache::sharedURLCache() {
    static auto& cache = *new NSURLCache;
    return cache;
}

void NSURLCache::setDiskCapacity(std::uint64_t bytes) {
    if (m_diskCapacity == bytes)
        return;
    m_diskCapacity = bytes;
    Platform::web().settingsChanged();
}

} // namespace kw
