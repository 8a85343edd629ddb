// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtRunLoop.h>

#include <KWToolkit/platform/Guarded.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kw::qt {

namespace {

constexpr int passIsOver = 0x4b57; // a code that no host exits with

bool wasExitSeen = false; // by a loop of the main thread

/// Rounded up, so that nothing is done early; at most 11 days, after which one looks again.
int milliseconds(double seconds) {
    return static_cast<int>(std::ceil(std::clamp(seconds, 0.0, 1e6) * 1000));
}

} // namespace

QtRunLoop::QtRunLoop() {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_owner, [this] { fireTimer(); });
}

RunLoop::Timer QtRunLoop::callAfter(double delay, std::function<void()> task) {
    const Timer timer = m_timers.add(m_clock.now(), delay, std::move(task));
    startTimer();
    return timer;
}

void QtRunLoop::cancel(Timer timer) {
    m_timers.cancel(timer);
    startTimer();
}

void QtRunLoop::startTimer() {
    if (const auto seconds = m_timers.secondsToNext(m_clock.now()))
        m_timer.start(milliseconds(*seconds));
    else
        m_timer.stop();
}

void QtRunLoop::fireTimer() {
    const auto task = m_timers.takeDue(m_clock.now(), m_timers.newest());
    // Before the call: the task may run a loop in which the others are to fire.
    startTimer();
    if (task)
        callGuarded(*task);
}

RunLoop::Watch QtRunLoop::watchDescriptor(int descriptor, std::function<void()> readable) {
    const Watch watch {++m_lastWatch};
    auto* const notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, &m_owner);
    QObject::connect(notifier, &QSocketNotifier::activated, &m_owner,
        [readable = std::move(readable)] { callGuarded(readable); });
    m_notifiers.emplace(watch, notifier);
    return watch;
}

void QtRunLoop::unwatch(Watch watch) {
    if (const auto found = m_notifiers.extract(watch)) {
        found.mapped()->setEnabled(false);
        // Later: it may be what is calling.
        found.mapped()->deleteLater();
    }
}

void QtRunLoop::perform(std::function<void()> task) {
    QMetaObject::invokeMethod(
        &m_owner, [task = std::move(task)] { callGuarded(task); }, Qt::QueuedConnection);
}

void QtRunLoop::run() {
    if (m_isStopped.exchange(false))
        return;
    QEventLoop loop;
    m_running.push_back(&loop);
    // Where this is within a performed task, Qt would not look for those performed before.
    QAbstractEventDispatcher::instance()->wakeUp();
    loop.exec();
    m_running.pop_back();
}

void QtRunLoop::stop() {
    m_isStopped = true;
    if (m_owner.thread() == QThread::currentThread())
        endInnermost();
    else
        perform([this] { endInnermost(); });
}

void QtRunLoop::endInnermost() {
    if (!m_running.empty() && m_isStopped.exchange(false))
        m_running.back()->exit();
}

bool QtRunLoop::isLeaving() {
    if (!wasExitSeen || QThread::currentThread()->loopLevel() == 0)
        return std::exchange(wasExitSeen, false); // no other loop would ever tell that it is over
    // Until the loops have returned, Qt begins no other one. That this one does end is posted.
    QEventLoop loop;
    QMetaObject::invokeMethod(&loop, [&loop] { loop.exit(passIsOver); }, Qt::QueuedConnection);
    wasExitSeen = loop.exec(QEventLoop::ExcludeUserInputEvents) != passIsOver;
    return wasExitSeen;
}

void QtRunLoop::hasLeft() { wasExitSeen = false; }

/// Within a loop that Qt knows: only such a one does QCoreApplication::exit wake and end.
void QtRunLoop::waitForEvents() {
    QEventLoop loop;
    bool hasWaited = false;
    const auto* const dispatcher = QAbstractEventDispatcher::instance();
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &loop,
        [&hasWaited] { hasWaited = true; });
    // Some dispatchers tell this before they do what is due, some after.
    QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &loop, [&loop, &hasWaited] {
        if (std::exchange(hasWaited, true))
            loop.exit(passIsOver);
    });
    if (loop.exec() != passIsOver && qApp && QThread::currentThread() == qApp->thread())
        wasExitSeen = true;
}

bool QtRunLoop::runOnce(double timeout) {
    if (!(timeout > 0))
        return m_loop.processEvents();
    if (std::isinf(timeout) && !wasExitSeen) {
        waitForEvents();
        return true;
    }
    bool isOver = false;
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    QObject::connect(&limit, &QTimer::timeout, &m_owner, [&isOver] { isOver = true; });
    limit.start(milliseconds(timeout));
    return m_loop.processEvents(QEventLoop::WaitForMoreEvents) && !isOver;
}

} // namespace kw::qt
