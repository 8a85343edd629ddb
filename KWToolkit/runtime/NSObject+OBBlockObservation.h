// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Observing properties with blocks.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/NSOperationQueue.h>
#include <KWToolkit/runtime/OBObserverTrampoline.h>

#include <memory>
#include <string>

namespace kw {

/// Calls `task` at each change of the value at the key path, with the object and what changed (only
/// the kind), until the token is handed back or the object dies:
///
///     const std::string token = kw::addObserverForKeyPath(*document, "author.name",
///         [](kw::NSObject& object, const kw::NSKeyValueChange&) { … });
///     kw::removeObserverWithBlockToken(*document, token);
///
/// With a queue, the task runs as an operation on it, which keeps the task and, where it is owned
/// by shared pointers, the object alive. Without one it runs on the thread that makes the change,
/// before that returns; what it throws leaves there. A task may remove itself or others, add others
/// and let go of the last pointer to the object; those it adds are not called for this change.
///
/// The object must outlive the call but is not kept alive by the observation; what the task holds
/// lives as long as the observation. Any thread. All observations of the process are added and
/// removed one after the other, and meanwhile the getters of objects on the path are called, and
/// what nobody needs any more may die: a lock that one of these takes must not be held here.
KW_EXPORT std::string addObserverForKeyPath(
    NSObject& object, const std::string& keyPath, OBObservationTask task);
KW_EXPORT std::string addObserverForKeyPath(NSObject& object, const std::string& keyPath,
    std::shared_ptr<NSOperationQueue> queue, OBObservationTask task);

/// Ends the observation. Once this has returned, the task is not called any more on this thread,
/// and on a queue no operation that has not begun calls it; a call that another thread has begun
/// may still be running. A token that is not, or no longer, of this object is told of on the
/// console. Any thread.
KW_EXPORT void removeObserverWithBlockToken(NSObject& object, const std::string& token);

} // namespace kw
