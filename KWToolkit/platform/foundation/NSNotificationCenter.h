// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kw {

class NSObject;

struct NSNotification {
    std::string name;
    NSObject* object = nullptr; ///< whom it is about; null where nobody is
};

/// Tells observers what happened. Any thread.
class KW_EXPORT NSNotificationCenter {
public:
    using Block = std::function<void(const NSNotification& notification)>;
    /// What `addObserver` answers; `none` is nobody.
    enum class Observer : std::uint64_t { none = 0 };

    static NSNotificationCenter& defaultCenter();

    /// The block is called on the posting thread with each notification of that name, about that
    /// object or, where it is null, about any. The object is not owned.
    Observer addObserver(std::string name, const NSObject* object, Block block);
    /// One that is gone, or none, is ignored. It is not called again, in a notification that is
    /// being posted neither, unless another thread is calling it just now.
    void removeObserver(Observer observer);

    /// Calls the observers in the order in which they were added, and not those that are added
    /// meanwhile. An exception from one leaves at once.
    void postNotificationName(const std::string& name, NSObject* object = nullptr);

private:
    struct Entry {
        Observer observer;
        std::string name;
        const NSObject* object;
        std::shared_ptr<const Block> block;
    };
    std::shared_ptr<const Block> blockOf(Observer observer) const;

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries;
    std::uint64_t m_last = 0;
};

} // namespace kw
