// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>

#include <KWToolkit/platform/foundation/Hazards.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/Observations.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ranges>
#include <utility>
#include <vector>

namespace kw {

namespace {

using detail::ObservationInfo;

/// A change between `will` and `did`.
struct OpenChange {
    std::uint64_t objectSerial;
    SEL key;
    detail::OldValues oldValues;
};

/// The calling thread's, innermost last; null for none. Not destroyed with the thread, as changes
/// are made to its very end.
constinit thread_local std::vector<OpenChange>* openChanges = nullptr;

OpenChange* innermostOf(const ObservationInfo& info, SEL key) {
    if (!openChanges)
        return nullptr;
    const auto found = std::ranges::find_if(
        openChanges->rbegin(), openChanges->rend(), [&](const OpenChange& change) {
            return change.objectSerial == info.serial() && change.key == key;
        });
    return found == openChanges->rend() ? nullptr : &*found;
}

std::optional<OpenChange> takeInnermostOf(ObservationInfo& info, SEL key) {
    OpenChange* const found = innermostOf(info, key);
    if (!found)
        return std::nullopt;
    OpenChange change = std::move(*found);
    openChanges->erase(openChanges->begin() + (found - openChanges->data()));
    if (openChanges->empty())
        delete std::exchange(openChanges, nullptr);
    --info.reasonsForWill;
    return change;
}

} // namespace

NSKeyValueObservation addObserver(NSObject& object, NSObject& observer, std::string_view keyPath,
    NSKeyValueObservingOptions options, const void* context) {
    auto* const observation =
        new detail::Observation {.observer = &observer, .context = context, .options = options};
    ObservationInfo& info = ObservationInfo::of(object);
    const detail::HazardPin pin(&info); // it may be removed by itself or by others meanwhile
    info.add(object, keyPath, *observation);
    if (options.initial) {
        try {
            detail::tellInitially(*observation, object);
        } catch (...) {
            if (observation->tell.load())
                info.remove(*observation);
            throw;
        }
    }
    return observation->tell.load() ? observation : nullptr;
}

void removeObserver(NSObject& object, NSKeyValueObservation observation) {
    if (ObservationInfo* const info = ObservationInfo::ifAny(object); info && observation)
        info->remove(*observation);
}

bool removeObserver(
    NSObject& object, NSObject& observer, std::string_view keyPath, const void* context) {
    ObservationInfo* const info = ObservationInfo::ifAny(object);
    return info && info->removeNewest(observer, keyPath, context);
}

void willChangeValueForKey(NSObject& object, SEL key) {
    ObservationInfo* const info = ObservationInfo::ifAny(object);
    if (!info)
        return;
    OpenChange change {.objectSerial = info->serial(), .key = key, .oldValues = {}};
    if (!innermostOf(*info, key))
        change.oldValues = info->willChange(object, key);
    if (!openChanges)
        openChanges = new std::vector<OpenChange>;
    openChanges->push_back(std::move(change));
    ++info->reasonsForWill;
}

void didChangeValueForKey(NSObject& object, SEL key) {
    ObservationInfo* const info = ObservationInfo::ifAny(object);
    if (!info)
        return;
    const auto change = takeInnermostOf(*info, key);
    if (!innermostOf(*info, key))
        info->didChange(object, key, change ? change->oldValues : detail::OldValues());
}

namespace detail {

bool needsWillChange(const NSObject& object) {
    const ObservationInfo* const info = ObservationInfo::ifAny(object);
    return info && info->reasonsForWill.load(std::memory_order_relaxed) != 0;
}

void tellOfChange(NSObject& object, SEL key) {
    static const detail::OldValues none;
    if (ObservationInfo* const info = ObservationInfo::ifAny(object))
        info->didChange(object, key, none);
}

void abandonChange(NSObject& object, SEL key) {
    if (ObservationInfo* const info = ObservationInfo::ifAny(object))
        takeInnermostOf(*info, key);
}

} // namespace detail

} // namespace kw
