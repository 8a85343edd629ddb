// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSOperationQueue.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/Platform.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kw {

namespace {

/// How long a thread without work stays.
constexpr std::chrono::seconds patience {5};

std::size_t threadsFor(int count) {
    if (count >= 0)
        return static_cast<std::size_t>(count);
    return std::max(2U, std::thread::hardware_concurrency());
}

} // namespace

struct NSOperationQueue::State {
    explicit State(bool runsOnMainThread)
        : isMain(runsOnMainThread) { }

    const bool isMain;
    std::mutex mutex; // guards what follows
    std::condition_variable hasWork;
    std::condition_variable isDone;
    std::deque<std::function<void()>> waiting;
    std::size_t running = 0;
    std::size_t threads = 0;
    int limit = NSOperationQueueDefaultMaxConcurrentOperationCount;
    bool isLetGo = false;

    bool canBegin() const { return !waiting.empty() && running < threadsFor(limit); }
    bool isOver() const { return isLetGo && waiting.empty(); }

    // With the mutex locked:
    /// Runs the first of those that wait, without the lock.
    void runNext(std::unique_lock<std::mutex>& lock);
    /// Wakes threads, or makes them, for what can begin.
    static void callThreads(const std::shared_ptr<State>& state);

    /// A thread's work.
    static void work(const std::shared_ptr<State>& state);
};

void NSOperationQueue::State::runNext(std::unique_lock<std::mutex>& lock) {
    ++running;
    {
        const std::function<void()> operation = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        callGuarded(operation);
    } // what it holds dies here
    lock.lock();
    --running;
    if (waiting.empty() && running == 0)
        isDone.notify_all();
}

void NSOperationQueue::State::callThreads(const std::shared_ptr<State>& state) {
    const std::size_t limit = threadsFor(state->limit);
    const std::size_t wanted = std::min(state->running + state->waiting.size(), limit);
    state->hasWork.notify_all();
    for (; state->threads < wanted; ++state->threads)
        std::thread(&work, state).detach();
}

void NSOperationQueue::State::work(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    bool isWanted = true;
    while (isWanted) {
        isWanted = state->hasWork.wait_for(
            lock, patience, [&] { return state->canBegin() || state->isOver(); });
        while (state->canBegin())
            state->runNext(lock);
        isWanted = isWanted && !state->isOver();
    }
    --state->threads;
}

NSOperationQueue::NSOperationQueue()
    : NSOperationQueue(std::make_shared<State>(false)) { }

NSOperationQueue::NSOperationQueue(std::shared_ptr<State> state)
    : m_state(std::move(state)) { }

NSOperationQueue::~NSOperationQueue() {
    const std::lock_guard lock(m_state->mutex);
    m_state->isLetGo = true;
    m_state->hasWork.notify_all();
}

Class& NSOperationQueue::classObject() {
    static auto& object = *new Class("NSOperationQueue", NSObject::classObject());
    return object;
}

const std::shared_ptr<NSOperationQueue>& NSOperationQueue::mainQueue() {
    static auto& queue = *new std::shared_ptr<NSOperationQueue>([] {
        auto state = std::make_shared<State>(true);
        state->limit = 1;
        return new NSOperationQueue(std::move(state));
    }());
    return queue;
}

void NSOperationQueue::addOperation(std::function<void()> operation) {
    std::unique_lock lock(m_state->mutex);
    if (m_state->isMain) {
        ++m_state->running;
        lock.unlock();
        // Over when it was run, or dropped with its loop.
        const std::shared_ptr<void> end(nullptr, [state = m_state](void*) {
            const std::lock_guard endLock(state->mutex);
            --state->running;
            state->isDone.notify_all();
        });
        Platform::performOnMainThread(
            [end, operation = std::move(operation)] { callGuarded(operation); });
        return;
    }
    m_state->waiting.push_back(std::move(operation));
    try {
        State::callThreads(m_state);
    } catch (const std::system_error&) {
        // Those that there are do it.
        if (m_state->threads > 0)
            return;
        m_state->waiting.pop_back();
        throw;
    }
}

void NSOperationQueue::setMaxConcurrentOperationCount(int count) {
    const std::lock_guard lock(m_state->mutex);
    if (m_state->isMain)
        return;
    m_state->limit = count;
    State::callThreads(m_state);
}

int NSOperationQueue::maxConcurrentOperationCount() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->limit;
}

std::size_t NSOperationQueue::operationCount() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->waiting.size() + m_state->running;
}

void NSOperationQueue::waitUntilAllOperationsAreFinished() const {
    std::unique_lock lock(m_state->mutex);
    m_state->isDone.wait(
        lock, [this] { return m_state->waiting.empty() && m_state->running == 0; });
}

} // namespace kw
