// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/TimerQueue.h>
#include <KWToolkit/platform/services/Clock.h>
#include <KWToolkit/platform/services/RunLoop.h>

#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <map>
#include <vector>

class QSocketNotifier;

namespace kw::qt {

/// A thread's Qt event loop, whoever runs it: the host's `exec` or `run` here.
class QtRunLoop final : public RunLoop {
public:
    QtRunLoop();

    Timer callAfter(double delay, std::function<void()> task) override;
    void cancel(Timer timer) override;
    Watch watchDescriptor(int descriptor, std::function<void()> readable) override;
    void unwatch(Watch watch) override;
    void perform(std::function<void()> task) override;
    void run() override;
    void stop() override;
    bool runOnce(double timeout) override;

    /// Whether `QCoreApplication::exit` was called and the loops that it ends, the application's
    /// among them, are yet to return. Noticed by a `runOnce` without a limit.
    static bool isLeaving();
    /// The application's loop has returned.
    static void hasLeft();

private:
    void startTimer();
    void fireTimer();
    void waitForEvents();
    void endInnermost();

    QObject m_owner; // of the notifiers; on the loop's thread
    QEventLoop m_loop; // of single passes; gives a thread that Qt did not start its dispatcher
    SteadyClock m_clock;

    TimerQueue m_timers; // Qt's own do not fire in the order in which they were made
    QTimer m_timer; // for the first of them

    std::map<Watch, QSocketNotifier*> m_notifiers;
    std::uint64_t m_lastWatch = 0;

    std::vector<QEventLoop*> m_running; // innermost last
    std::atomic<bool> m_isStopped = false;
};

} // namespace kw::qt
