// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace kw {

/// As many operations at once as the machine has processors.
inline constexpr int NSOperationQueueDefaultMaxConcurrentOperationCount = -1;

/// Runs operations in the background, on threads of its own, in the order in which they are added:
/// with one at a time that is a serial queue, otherwise it is the order in which they begin.
///
/// A queue may be let go at any time, within one of its operations, too: what was added is run, as
/// long as the process lives and the count below lets it.
/// Any thread.
class KW_EXPORT NSOperationQueue : public NSObject {
public:
    NSOperationQueue();
    ~NSOperationQueue() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The one whose operations run on the main thread, one at a time, when its loop comes to them;
    /// see `Platform::performOnMainThread`.
    static const std::shared_ptr<NSOperationQueue>& mainQueue();

    /// An exception from an operation is written to the console. Throws `std::system_error`, and
    /// adds nothing, where the system has no thread left and the queue none.
    void addOperation(std::function<void()> operation);

    /// How many operations run at once. Counts for those that have yet to begin; 0 lets none begin.
    /// The main queue's stays 1.
    void setMaxConcurrentOperationCount(int count);
    int maxConcurrentOperationCount() const;

    /// Those that have not ended.
    std::size_t operationCount() const;
    /// Not to be called within an operation of the same queue, nor for the main queue on the main
    /// thread: it would wait for itself.
    void waitUntilAllOperationsAreFinished() const;

private:
    struct State;
    explicit NSOperationQueue(std::shared_ptr<State> state);

    // Shared with the threads, which outlive the queue while there is something to run.
    const std::shared_ptr<State> m_state;
};

} // namespace kw
