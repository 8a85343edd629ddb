// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/RunLoop.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace kw {

/// What a run loop is to call later: by the time due, then by age. Times are seconds of the loop's
/// clock. For the loop's own thread.
class KW_EXPORT TimerQueue {
public:
    /// Due at once for a delay of 0, less, or not a number.
    RunLoop::Timer add(double now, double delay, std::function<void()> task);
    void cancel(RunLoop::Timer timer);

    /// The timer made last.
    RunLoop::Timer newest() const { return RunLoop::Timer {m_newest}; }
    /// Takes out the first task that is due, of those made no later than `newest`.
    std::optional<std::function<void()>> takeDue(double now, RunLoop::Timer newest);

    /// Nothing for an empty queue; 0 or less for a task that is due.
    std::optional<double> secondsToNext(double now) const;

private:
    std::map<std::pair<double, std::uint64_t>, std::function<void()>> m_tasks;
    std::uint64_t m_newest = 0;
};

} // namespace kw
