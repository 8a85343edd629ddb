// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/TimerQueue.h>

#include <algorithm>

namespace kw {

RunLoop::Timer TimerQueue::add(double now, double delay, std::function<void()> task) {
    const double due = delay > 0 ? now + delay : now; // not a number: now
    m_tasks.emplace(std::pair {due, ++m_newest}, std::move(task));
    return newest();
}

void TimerQueue::cancel(RunLoop::Timer timer) {
    std::erase_if(m_tasks, [timer](const auto& entry) {
        return entry.first.second == static_cast<std::uint64_t>(timer);
    });
}

std::optional<std::function<void()>> TimerQueue::takeDue(double now, RunLoop::Timer newest) {
    const auto first = std::ranges::find_if(m_tasks, [newest](const auto& entry) {
        return entry.first.second <= static_cast<std::uint64_t>(newest);
    });
    if (first == m_tasks.end() || first->first.first > now)
        return std::nullopt;
    return std::move(m_tasks.extract(first).mapped());
}

std::optional<double> TimerQueue::secondsToNext(double now) const {
    if (m_tasks.empty())
        return std::nullopt;
    return m_tasks.begin()->first.first - now;
}

} // namespace kw
