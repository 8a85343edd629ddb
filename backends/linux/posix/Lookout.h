// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>

namespace kw {

/// Tells when to look for a change again: at first, and then at most every 200 microseconds, so
/// that many messages at once do not each pay for the system calls. Used by several threads at
/// once.
class Lookout {
public:
    /// `now` is the time of day in nanoseconds, which may be set back.
    bool isDue(std::int64_t now) {
        constexpr std::int64_t interval = 200'000;
        const std::int64_t last = m_last.load(std::memory_order_relaxed);
        if (last <= now && now < last + interval)
            return false;
        m_last.store(now, std::memory_order_relaxed);
        return true;
    }

private:
    std::atomic<std::int64_t> m_last = 0;
};

} // namespace kw
