// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>

namespace kw {

/// What web pages keep of what they have loaded. Main thread.
class KW_EXPORT NSURLCache {
public:
    /// Of every web page of the process.
    static NSURLCache& sharedURLCache();

    /// In bytes. 0 keeps nothing on disk.
    std::uint64_t diskCapacity() const { return m_diskCapacity; }
    void setDiskCapacity(std::uint64_t bytes);

private:
    NSURLCache() = default;

    std::uint64_t m_diskCapacity = 20'000'000;
};

} // namespace kw
