// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Who observes an object. Private to the foundation.
#pragma once

#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/NSObject.h>

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

/// One registration.
struct Observation {
    enum class State : std::uint8_t {
        simple, ///< just the observer is to be told
        special, ///< or there are options or a path
        removed,
    };

    NSObject* observer;
    const void* context;
    KeyObservers* list;
    std::uint64_t serial; // of the registration, as addresses are used again
    std::uint32_t index = 0; // in the list
    NSKeyValueObservingOptions options;
    std::atomic<State> state;
    std::shared_ptr<PathLink> link; // to the rest of the path, if there is one
};

/// Tells the observer of the value that is there when it is added.
void tellInitially(const Observation& observation, NSObject& object);

/// The observations of one object.
///
/// Changes of the lists take a mutex. Telling of a change takes none: it pins the lists, and what
/// is taken out meanwhile is kept until nobody has them pinned. The object may die while they are.
class ObservationInfo : public ObservedKeys {
public:
    /// A walk through the lists.
    class Pin {
    public:
        explicit Pin(ObservationInfo& info)
            : m_info(info) {
            m_info.m_state.fetch_add(onePin, std::memory_order_acq_rel);
        }
        ~Pin() { m_info.unpin(); }
        Pin(const Pin&) = delete;
        Pin& operator=(const Pin&) = delete;

    private:
        ObservationInfo& m_info;
    };

    /// Made on first use; any thread.
    static ObservationInfo& of(NSObject& object);
    static ObservationInfo* ifAny(const NSObject& object) {
        return static_cast<ObservationInfo*>(object.m_observations.load(std::memory_order_acquire));
    }
    static void objectDies(NSObject& object);

    Observation& add(NSObject& object, NSObject& observer, std::string_view keyPath,
        NSKeyValueObservingOptions options, const void* context);
    void remove(Observation& observation);
    /// The newest such observation, or null.
    Observation* find(const NSObject& observer, std::string_view keyPath, const void* context);

    /// Old values by the serials of the observations that want to know them.
    using OldValues = std::vector<std::pair<std::uint64_t, std::any>>;
    /// Tells those that want to be told before the change.
    OldValues willChange(NSObject& object, SEL key);
    void didChange(NSObject& object, SEL key, const OldValues& oldValues);

    /// Unlike the address, never that of another object's.
    std::uint64_t serial() const { return m_serial; }
    /// Observations that are told before a change or want to know what was there, and changes that
    /// have been announced and not been made.
    std::atomic<std::uint32_t> reasonsForWill = 0;

private:
    static constexpr std::uint32_t objectIsDead = 1;
    static constexpr std::uint32_t hasRetired = 2;
    static constexpr std::uint32_t onePin = 4;

    /// What was taken out of the lists.
    struct Retired {
        std::unique_ptr<Observation> observation;
        std::shared_ptr<NSObject> observer; ///< which a walk may be about to call
        std::unique_ptr<ObservationArray> array;
    };

    ObservationInfo();
    ~ObservationInfo();
    KeyObservers* listOf(SEL key) const;
    void takeOut(Observation& observation);
    Retired retire(Retired retired);
    void collect();
    void unpin();

    std::atomic<std::uint32_t> m_state = 0; // pins, and the two flags
    std::atomic<KeyObservers*> m_lists = nullptr;
    std::mutex m_mutex; // guards what follows, and changes of the lists
    std::vector<Retired> m_retired;
    const std::uint64_t m_serial;
};

} // namespace kw::detail
