// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/DispatchQueue.h>

#include <KWToolkit/platform/foundation/NSException.h>

namespace kw {

DispatchQueue::Turn::Turn(DispatchQueue& queue)
    : m_queue(queue) {
    const auto self = std::this_thread::get_id();
    if (m_queue.m_runningOn.load(std::memory_order_relaxed) == self)
        throw NSException(NSInternalInconsistencyException,
            "dispatch_sync called on queue \"" + m_queue.m_label
                + "\" already owned by current thread");
    m_queue.m_mutex.lock();
    m_queue.m_runningOn.store(self, std::memory_order_relaxed);
}

DispatchQueue::Turn::~Turn() {
    m_queue.m_runningOn.store({}, std::memory_order_relaxed);
    m_queue.m_mutex.unlock();
}

} // namespace kw
