// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/runtime/OBObserverTrampoline.h>

#include <utility>

namespace kw {

namespace {

// Compared by its address.
constexpr char OBObserverTrampolineContext[] = "OBObserverTrampolineContext";

} // namespace

OBObserverTrampoline::OBObserverTrampoline(Key, NSObject& observee, std::string keyPath,
    std::shared_ptr<NSOperationQueue> queue, OBObservationTask task)
    : m_observee(observee)
    , m_queue(std::move(queue))
    , m_keyPath(std::move(keyPath))
    , m_task(task ? std::move(task) : [](NSObject&, const NSKeyValueChange&) { }) { }

std::shared_ptr<OBObserverTrampoline> OBObserverTrampoline::initObservingObject(NSObject& observee,
    std::string keyPath, std::shared_ptr<NSOperationQueue> queue, OBObservationTask task) {
    // Observes only once it is owned: the first change may come at once, from another thread.
    auto trampoline = std::make_shared<OBObserverTrampoline>(
        Key(), observee, std::move(keyPath), std::move(queue), std::move(task));
    trampoline->m_observation = addObserver(observee, *trampoline, trampoline->m_keyPath,
        NSKeyValueObservingOptions::none, OBObserverTrampolineContext);
    return trampoline;
}

OBObserverTrampoline::~OBObserverTrampoline() { cancelObservation(); }

Class& OBObserverTrampoline::classObject() {
    static auto& object = *new Class("OBObserverTrampoline", NSObject::classObject());
    return object;
}

void OBObserverTrampoline::observeValueForKeyPath(
    const std::string&, NSObject& object, const NSKeyValueChange& change, const void* context) {
    // Deliberate: what is not the trampoline's own is not passed on to the base class.
    if (context != OBObserverTrampolineContext)
        return;
    if (m_queue)
        addToQueue(object, change);
    else
        m_task(object, change);
}

void OBObserverTrampoline::addToQueue(NSObject& object, const NSKeyValueChange& change) {
    m_queue->addOperation(
        [self = std::static_pointer_cast<OBObserverTrampoline>(shared_from_this()),
            owned = object.weak_from_this().lock(), observed = WeakReference(object), change] {
            // An object that nobody shares cannot be kept alive until here.
            const auto target = observed.lock();
            if (target && !self->m_cancellationPredicate)
                self->m_task(*target, change);
        });
}

void OBObserverTrampoline::cancelObservation() {
    if (m_cancellationPredicate.exchange(true))
        return;
    if (const auto observee = m_observee.lock())
        removeObserver(*observee, m_observation);
    m_observee = {};
}

} // namespace kw
