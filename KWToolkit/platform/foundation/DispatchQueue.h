// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <string>
#include <utility>

namespace kw {

/// A serial queue whose blocks run one at a time on the threads that hand them in.
class DispatchQueue {
public:
    /// The label is for developers: a reversed host name and the queue's own.
    explicit DispatchQueue(std::string label)
        : m_label(std::move(label)) { }

    const std::string& label() const { return m_label; }

    /// Runs the block when those before it are done, and returns after it; from within a block of
    /// the same queue, at once. What it throws comes out here. Any thread.
    template <class Block>
    void sync(Block&& block) {
        const std::lock_guard turn(m_mutex);
        std::forward<Block>(block)();
    }

private:
    const std::string m_label;
    std::recursive_mutex m_mutex;
};

} // namespace kw
