// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace kw {

/// A serial queue whose blocks run one at a time on the threads that hand them in.
class KW_EXPORT DispatchQueue {
public:
    /// The label is for developers: a reversed host name and the queue's own.
    explicit DispatchQueue(std::string label)
        : m_label(std::move(label)) { }

    const std::string& label() const { return m_label; }

    /// Runs the block when those before it are done, and returns after it; what it throws comes out
    /// here. Any thread. From within a block of the same queue, where it would wait for itself, it
    /// throws an `NSException` named "NSInternalInconsistencyException" instead.
    template <class Block>
    void sync(Block&& block) {
        const Turn turn(*this);
        std::forward<Block>(block)();
    }

private:
    class KW_EXPORT Turn {
    public:
        explicit Turn(DispatchQueue& queue);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        DispatchQueue& m_queue;
    };

    const std::string m_label;
    std::mutex m_mutex;
    std::atomic<std::thread::id> m_runningOn {};
};

} // namespace kw
