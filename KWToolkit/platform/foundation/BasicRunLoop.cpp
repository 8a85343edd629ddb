// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/BasicRunLoop.h>

#include <KWToolkit/platform/services/Clock.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace kw {

RunLoop::Timer BasicRunLoop::callAfter(double delay, std::function<void()> task) {
    return m_timers.add(now(), delay, std::move(task));
}

void BasicRunLoop::cancel(Timer timer) { m_timers.cancel(timer); }

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
    const Timer newest = m_timers.newest();
    const double next = m_timers.secondsToNext(now()).value_or(forever);
    const bool happened = wait(std::clamp(next, 0.0, std::max(timeout, 0.0)));
    const bool performed = performTasks();
    const bool fired = fireTimers(newest);
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

bool BasicRunLoop::fireTimers(Timer newest) {
    const double time = now();
    bool fired = false;
    while (const auto task = m_timers.takeDue(time, newest)) {
        fired = true;
        (*task)();
    }
    return fired;
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
