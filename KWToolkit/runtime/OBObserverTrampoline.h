// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/NSOperationQueue.h>

#include <functional>
#include <memory>
#include <string>

namespace kw {

/// What is called with the observed object and the change. Whether several threads call it at once
/// depends on where the object is changed and on the queue.
using OBObservationTask = std::function<void(NSObject& object, const NSKeyValueChange& change)>;

/// An observer that hands each change to a task, at once or on a queue.
class KW_EXPORT OBObserverTrampoline : public NSObject {
public:
    /// Observes the object, which is not owned, until `cancelObservation` or until the object or
    /// the trampoline is destroyed. Without a queue the task runs on the thread that makes the
    /// change. Any thread.
    static std::shared_ptr<OBObserverTrampoline> initObservingObject(NSObject& observee,
        std::string keyPath, std::shared_ptr<NSOperationQueue> queue, OBObservationTask task);

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Ends the observation; done already, it does nothing. The task is not called any more on this
    /// thread; on a queue, an operation that has not begun does not call it either. Any thread.
    virtual void cancelObservation() = 0;
};

} // namespace kw
