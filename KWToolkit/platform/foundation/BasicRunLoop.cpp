// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/BasicRunLoop.h>

#include <KWToolkit/platform/services/Clock.h>

#include <algorithm>
#include <chrono>

namespace kw {

RunLoop::Timer BasicRunLoop::callAfter(double delay, std::function<void()> task) {
    const double due = delay > 0 ? now() + delay : now(); // not a number: now
    m_timers.emplace(std::pair {due, ++m_lastTimer}, std::move(task));
    return Timer {m_lastTimer};
}

void BasicRunLoop::cancel(Timer timer) {
    std::erase_if(m_timers, [timer](const auto& entry) {
        return entry.first.second == static_cast<std::uint64_t>(timer);
    });
}

void BasicRunLoop::perform(std::function<void()> task) {
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    wake();
}

void BasicRunLoop::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
    }
    wake();
}

void BasicRunLoop::run() {
    const auto takeStop = [this] {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_isStopped, false);
    };
    while (!takeStop())
        runOnce(forever);
}

bool BasicRunLoop::runOnce(double timeout) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_tasks.empty() || m_isStopped)
            timeout = 0;
    }
    // What is scheduled from here on waits for the next pass.
    const std::uint64_t lastTimer = m_lastTimer;
    const bool happened = wait(std::clamp(secondsToNextTimer(), 0.0, std::max(timeout, 0.0)));
    const bool performed = performTasks();
    const bool fired = fireTimers(lastTimer);
    return happened || performed || fired;
}

bool BasicRunLoop::performTasks() {
    std::size_t count = 0;
    {
        const std::lock_guard lock(m_mutex);
        count = m_tasks.size();
    }
    // One by one: a task that throws leaves the others in place, one that nests a loop lets it on.
    std::size_t done = 0;
    for (; done < count; ++done) {
        std::function<void()> task;
        {
            const std::lock_guard lock(m_mutex);
            if (m_tasks.empty())
                break;
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
    }
    return done > 0;
}

bool BasicRunLoop::fireTimers(std::uint64_t madeBefore) {
    const double time = now();
    bool fired = false;
    for (;;) {
        const auto due = std::ranges::find_if(
            m_timers, [madeBefore](const auto& entry) { return entry.first.second <= madeBefore; });
        if (due == m_timers.end() || due->first.first > time)
            return fired;
        const auto task = std::move(due->second);
        m_timers.erase(due);
        fired = true;
        task();
    }
}

double BasicRunLoop::secondsToNextTimer() const {
    return m_timers.empty() ? forever : m_timers.begin()->first.first - now();
}

double StandardRunLoop::now() const { return SteadyClock().now(); }

bool StandardRunLoop::wait(double seconds) {
    std::unique_lock lock(m_mutex);
    const auto isWoken = [this] { return m_isWoken; };
    if (seconds == forever)
        m_wakeUp.wait(lock, isWoken);
    else
        m_wakeUp.wait_for(lock, std::chrono::duration<double>(std::min(seconds, 1e6)), isWoken);
    m_isWoken = false;
    return false;
}

void StandardRunLoop::wake() {
    {
        const std::lock_guard lock(m_mutex);
        m_isWoken = true;
    }
    m_wakeUp.notify_one();
}

} // namespace kw
