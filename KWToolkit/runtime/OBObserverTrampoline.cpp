// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/runtime/OBObserverTrampoline.h>

#include <KWToolkit/platform/foundation/Observations.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <atomic>
#include <utility>

namespace kw {

namespace {

// Compared by its address.
constexpr char OBObserverTrampolineContext[] = "OBObserverTrampolineContext";

/// Holds its observation, so that a change finds task and observation in one place.
class Trampoline final : public OBObserverTrampoline {
public:
    Trampoline(NSObject& observee, std::string keyPath, std::shared_ptr<NSOperationQueue> queue,
        OBObservationTask task)
        : m_observee(observee)
        , m_queue(std::move(queue))
        , m_keyPath(std::move(keyPath))
        , m_task(task ? std::move(task) : [](NSObject&, const NSKeyValueChange&) { }) {
        m_storage.observer = this;
        m_storage.context = OBObserverTrampolineContext;
        m_storage.isPartOfObserver = true;
    }
    ~Trampoline() override { cancelObservation(); }

    void observe(NSObject& observee) {
        detail::ObservationInfo::of(observee).add(
            observee, m_keyPath, m_storage, m_queue ? &tellOnQueue : &tellAtOnce);
        m_observation = &m_storage;
    }

    void observeValueForKeyPath(const std::string&, NSObject& object,
        const NSKeyValueChange& change, const void* context) override {
        // Deliberate: what is not the trampoline's own is not passed on to the base class.
        if (context != OBObserverTrampolineContext)
            return;
        if (m_queue)
            addToQueue(object, change);
        else
            m_task(object, change);
    }

    void cancelObservation() override {
        m_cancellationPredicate = true;
        // Once, also where several threads come here; the others wait until it is out of the lists.
        if (m_observation)
            detail::ObservationInfo::remove(m_observee, *m_observation);
    }

private:
    static void tellAtOnce(
        detail::Observation& observation, NSObject& object, const detail::OldValues&) {
        static_cast<Trampoline*>(observation.observer)
            ->m_task(object, detail::changeWithoutDetails);
    }
    static void tellOnQueue(
        detail::Observation& observation, NSObject& object, const detail::OldValues&) {
        static_cast<Trampoline*>(observation.observer)
            ->addToQueue(object, detail::changeWithoutDetails);
    }

    void addToQueue(NSObject& object, const NSKeyValueChange& change) {
        auto owned = object.weak_from_this().lock();
        // An object that nobody shares cannot be kept alive until the operation runs.
        auto borrowed = owned ? WeakReference() : WeakReference(object);
        m_queue->addOperation(
            [self = std::static_pointer_cast<Trampoline>(shared_from_this()),
                owned = std::move(owned), borrowed = std::move(borrowed), change] {
                const auto target = owned ? owned : borrowed.lock();
                if (target && !self->m_cancellationPredicate)
                    self->m_task(*target, change);
            });
    }

    const WeakReference m_observee;
    std::atomic<bool> m_cancellationPredicate = false; // whether it was cancelled
    NSKeyValueObservation m_observation = nullptr;
    // Released in reverse: the task, the key path, the queue.
    const std::shared_ptr<NSOperationQueue> m_queue;
    const std::string m_keyPath;
    const OBObservationTask m_task;
    detail::Observation m_storage;
};

} // namespace

std::shared_ptr<OBObserverTrampoline> OBObserverTrampoline::initObservingObject(NSObject& observee,
    std::string keyPath, std::shared_ptr<NSOperationQueue> queue, OBObservationTask task) {
    // Observes only once it is owned: the first change may come at once, from another thread.
    auto trampoline = std::make_shared<Trampoline>(
        observee, std::move(keyPath), std::move(queue), std::move(task));
    trampoline->observe(observee);
    // Who lets go of the last pointer cancels while the trampoline is still owned by somebody: it
    // may be just what is called.
    auto* const address = trampoline.get();
    return {address,
        [owner = std::move(trampoline)](OBObserverTrampoline*) { owner->cancelObservation(); }};
}

Class& OBObserverTrampoline::classObject() {
    static auto& object = *new Class("OBObserverTrampoline", NSObject::classObject());
    return object;
}

} // namespace kw
