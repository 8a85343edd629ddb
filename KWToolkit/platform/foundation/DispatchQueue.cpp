// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/DispatchQueue.h>

#include <KWToolkit/platform/foundation/NSException.h>

namespace kw {

namespace {

class Turn {
public:
    explicit Turn(std::atomic<std::thread::id>& runningOn)
        : m_runningOn(runningOn) {
        m_runningOn.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    ~Turn() { m_runningOn.store({}, std::memory_order_relaxed); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    std::atomic<std::thread::id>& m_runningOn;
};

} // namespace

void DispatchQueue::sync(const std::function<void()>& block) {
    if (m_runningOn.load(std::memory_order_relaxed) == std::this_thread::get_id())
        throw NSException(NSInternalInconsistencyException,
            "dispatch_sync called on queue \"" + m_label + "\" already owned by current thread");
    const std::lock_guard lock(m_mutex);
    const Turn turn(m_runningOn);
    block();
}

} // namespace kw
