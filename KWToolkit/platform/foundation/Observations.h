// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Who observes an object. Private to the toolkit.
#pragma once

#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <any>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace kw::detail {

class PathLink;
struct KeyObservers;
struct ObservationArray;

/// Old values by the serials of the observations that want to know them.
using OldValues = std::vector<std::pair<std::uint64_t, std::any>>;

/// One registration.
struct Observation {
    using Tell = void (*)(Observation& observation, NSObject& object, const OldValues& oldValues);

    std::atomic<Tell> tell = nullptr; ///< null once it was removed
    NSObject* observer = nullptr;
    const void* context = nullptr;
    KeyObservers* list = nullptr;
    std::uint64_t serial = 0; ///< of the registration, as addresses are used again
    std::uint32_t index = 0; ///< in the list
    NSKeyValueObservingOptions options;
    bool isPartOfObserver = false; ///< else it is the lists'
    std::shared_ptr<PathLink> link; ///< to the rest of the path, if there is one
};

/// Calls the observer, with no details of the change.
void tellSimply(Observation& observation, NSObject& object, const OldValues& oldValues);
/// Tells the observer of the value that is there when it is added.
void tellInitially(const Observation& observation, NSObject& object);
/// A change of which nothing but its kind is told.
extern const NSKeyValueChange& changeWithoutDetails;

/// The observations of one object.
///
/// Changes of the lists take a mutex. Telling of a change takes none: it pins the lists, and what
/// is taken out meanwhile is kept until nobody has them pinned. The object may die while they are.
class ObservationInfo : public ObservedKeys {
public:
    /// Made on first use; any thread.
    static ObservationInfo& of(NSObject& object);
    static ObservationInfo* ifAny(const NSObject& object) {
        return static_cast<ObservationInfo*>(object.m_observations.load(std::memory_order_acquire));
    }
    /// Empties the object's weak references, too.
    static void objectDies(NSObject& object);

    /// Adds what has an observer, a context and options. Without a path or options the observer is
    /// told by `simply`. With an exception from a getter on the path nothing was added.
    void add(NSObject& object, std::string_view keyPath, Observation& observation,
        Observation::Tell simply = &tellSimply);
    void remove(Observation& observation);
    /// The same of an object that may be dying, or dead, and of what may have been removed: then
    /// there is nothing to do.
    static void remove(const WeakReference& object, Observation& observation);
    /// Removes the newest such observation. False where there is none.
    bool removeNewest(const NSObject& observer, std::string_view keyPath, const void* context);

    /// Tells those that want to be told before the change.
    OldValues willChange(NSObject& object, SEL key);
    void didChange(NSObject& object, SEL key, const OldValues& oldValues);

    /// Unlike the address, never that of another object's.
    std::uint64_t serial() const { return m_serial; }
    /// Observations that are told before a change or want to know what was there, and changes that
    /// have been announced and not been made.
    std::atomic<std::uint32_t> reasonsForWill = 0;

private:
    friend struct std::default_delete<ObservationInfo>;
    using FormerArray = std::unique_ptr<ObservationArray>;

    ObservationInfo();
    ~ObservationInfo();
    KeyObservers* listOf(SEL key) const;
    KeyObservers& listFor(SEL key);
    FormerArray rebuild(KeyObservers& list);
    void unlist(Observation& observation);
    FormerArray takeOut(Observation& observation);
    // What was taken out, after all locks are released; the lists may be gone by then.
    static void free(const void* lists, FormerArray array);
    static void finish(const void* lists, Observation& observation, FormerArray array);

    std::atomic<KeyObservers*> m_lists = nullptr;
    std::mutex m_mutex; // of changes of the lists
    const std::uint64_t m_serial;
};

} // namespace kw::detail
