// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/DispatchQueue.h>
#include <KWToolkit/platform/foundation/NSProcessInfo.h>
#include <KWToolkit/runtime/NSObject+OBAssociatedObjects.h>

#include <unordered_map>
#include <utility>

namespace kw {

namespace {

// The map is found under this address.
constexpr char observerMapKey[] = "org.kwtoolkit.observerMap";

/// The trampolines of one object by their tokens.
class ObserverMap final : public NSObject {
public:
    std::unordered_map<std::string, std::shared_ptr<OBObserverTrampoline>> trampolines;
};

/// All changes of observer maps are made on it.
DispatchQueue& mutationQueue() {
    static auto& queue = *new DispatchQueue("org.kwtoolkit.observerMutationQueue");
    return queue;
}

std::shared_ptr<ObserverMap> observerMap(const NSObject& object) {
    return std::static_pointer_cast<ObserverMap>(associatedValueForKey(object, observerMapKey));
}

} // namespace

std::string addObserverForKeyPath(
    NSObject& object, const std::string& keyPath, OBObservationTask task) {
    return addObserverForKeyPath(object, keyPath, nullptr, std::move(task));
}

std::string addObserverForKeyPath(NSObject& object, const std::string& keyPath,
    std::shared_ptr<NSOperationQueue> queue, OBObservationTask task) {
    std::string token = NSProcessInfo::globallyUniqueString();
    mutationQueue().sync([&] {
        // First, as getters on the path may observe, too.
        auto trampoline = OBObserverTrampoline::initObservingObject(
            object, keyPath, std::move(queue), std::move(task));
        auto map = observerMap(object);
        if (!map) {
            map = std::make_shared<ObserverMap>();
            associateValue(object, map, observerMapKey);
        }
        map->trampolines.emplace(token, std::move(trampoline));
    });
    return token;
}

void removeObserverWithBlockToken(NSObject& object, const std::string& token) {
    // Ends after the queue's turn: what the task holds may observe, too.
    std::shared_ptr<OBObserverTrampoline> trampoline;
    mutationQueue().sync([&] {
        const auto map = observerMap(object);
        if (!map)
            return;
        const auto found = map->trampolines.find(token);
        if (found == map->trampolines.end())
            return;
        trampoline = found->second;
        trampoline->cancelObservation();
        // An object on the path may have died, and removed others.
        map->trampolines.erase(token);
        if (map->trampolines.empty() && observerMap(object) == map)
            associateValue(object, nullptr, observerMapKey);
    });
    if (!trampoline)
        Platform::console().writeLine(
            "[NSObject(OBBlockObservation) removeObserverWithBlockToken]: Ignoring attempt to "
            "remove non-existent observer on "
            + object.description() + " for token " + token + ".");
}

} // namespace kw
