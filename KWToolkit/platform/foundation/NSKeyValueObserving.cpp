// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>

#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/Observations.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ranges>
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

/// The calling thread's, innermost last.
std::vector<OpenChange>& openChanges() {
    thread_local std::vector<OpenChange> changes;
    return changes;
}

auto innermostOf(const ObservationInfo& info, SEL key) {
    auto& changes = openChanges();
    return std::ranges::find_if(changes.rbegin(), changes.rend(), [&](const OpenChange& change) {
        return change.objectSerial == info.serial() && change.key == key;
    });
}

bool isOpen(const ObservationInfo& info, SEL key) {
    return innermostOf(info, key) != openChanges().rend();
}

std::optional<OpenChange> takeInnermostOf(ObservationInfo& info, SEL key) {
    const auto found = innermostOf(info, key);
    if (found == openChanges().rend())
        return std::nullopt;
    OpenChange change = std::move(*found);
    openChanges().erase(std::next(found).base());
    --info.reasonsForWill;
    return change;
}

} // namespace

NSKeyValueObservation addObserver(NSObject& object, NSObject& observer, std::string_view keyPath,
    NSKeyValueObservingOptions options, const void* context) {
    auto* const observation =
        new detail::Observation {.observer = &observer, .context = context, .options = options};
    ObservationInfo::of(object).add(object, keyPath, *observation);
    if (options.initial) {
        try {
            detail::tellInitially(*observation, object);
        } catch (...) {
            removeObserver(object, observation);
            throw;
        }
    }
    return observation;
}

void removeObserver(NSObject& object, NSKeyValueObservation observation) {
    if (ObservationInfo* const info = ObservationInfo::ifAny(object); info && observation)
        info->remove(*observation);
}

bool removeObserver(
    NSObject& object, NSObject& observer, std::string_view keyPath, const void* context) {
    ObservationInfo* const info = ObservationInfo::ifAny(object);
    auto* const observation = info ? info->find(observer, keyPath, context) : nullptr;
    if (observation)
        info->remove(*observation);
    return observation != nullptr;
}

void willChangeValueForKey(NSObject& object, SEL key) {
    ObservationInfo* const info = ObservationInfo::ifAny(object);
    if (!info)
        return;
    OpenChange change {.objectSerial = info->serial(), .key = key, .oldValues = {}};
    if (!isOpen(*info, key))
        change.oldValues = info->willChange(object, key);
    openChanges().push_back(std::move(change));
    ++info->reasonsForWill;
}

void didChangeValueForKey(NSObject& object, SEL key) {
    ObservationInfo* const info = ObservationInfo::ifAny(object);
    if (!info)
        return;
    const auto change = takeInnermostOf(*info, key);
    if (!isOpen(*info, key))
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
