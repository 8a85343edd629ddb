// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/TimerQueue.h>
#include <KWToolkit/platform/services/RunLoop.h>

#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>

namespace kw {

/// Timers and performed tasks, with the waiting left to subclasses.
class KW_EXPORT BasicRunLoop : public RunLoop {
public:
    Timer callAfter(double delay, std::function<void()> task) override;
    void cancel(Timer timer) override;
    void perform(std::function<void()> task) override;
    void run() override;
    void stop() override;
    bool runOnce(double timeout) override;

protected:
    static constexpr double forever = std::numeric_limits<double>::infinity();

    virtual double now() const = 0;
    /// Waits until something happens, `wake` was called since the last wait, or `seconds` (0 to
    /// `forever`) have passed, and handles what happened. Returns whether it handled anything.
    virtual bool wait(double seconds) = 0;
    /// Ends the current or next wait. Any thread.
    virtual void wake() = 0;

private:
    bool fireTimers(Timer newest);
    bool performTasks();

    TimerQueue m_timers;

    std::mutex m_mutex; // guards what follows
    std::deque<std::function<void()>> m_tasks;
    bool m_isStopped = false;
};

/// A loop of timers and tasks on the machine's clock, made of the standard library alone. It cannot
/// watch descriptors.
class KW_EXPORT StandardRunLoop final : public BasicRunLoop {
public:
    Watch watchDescriptor(int, std::function<void()>) override { return Watch::none; }
    void unwatch(Watch) override { }

protected:
    double now() const override;
    bool wait(double seconds) override;
    void wake() override;

private:
    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    bool m_isWoken = false;
};

} // namespace kw
