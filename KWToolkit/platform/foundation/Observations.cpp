// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Observations.h>

#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/WeakReference.h>

#include <algorithm>
#include <functional>
#include <ranges>
#include <string>

namespace kw::detail {

namespace {

using State = Observation::State;
using Options = NSKeyValueObservingOptions;

std::uint64_t nextSerial() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

SEL firstKey(std::string_view keyPath) { return SEL(keyPath.substr(0, keyPath.find('.'))); }

/// What the property holds; null also where it is none or holds something else.
std::shared_ptr<NSObject> relatedObject(NSObject& object, SEL key) {
    const Property* const property = object.isa().property(key);
    const std::any value = property ? property->get(object) : std::any();
    const auto* const related = std::any_cast<std::shared_ptr<NSObject>>(&value);
    return related ? *related : nullptr;
}

/// Nothing also for a path that leads nowhere.
std::any valueIfAny(const NSObject& object, std::string_view keyPath) {
    try {
        return valueForKeyPath(object, keyPath);
    } catch (const NSException& exception) {
        if (exception.name() != NSUnknownKeyException)
            throw;
        return {};
    }
}

bool wantsWill(Options options) { return contains(options, Options::oldValue | Options::prior); }

} // namespace

/// The observations of one key in the order in which they were added, with nulls for those that
/// were removed. Never made shorter, so that a walk does not meet what is added during it.
struct ObservationArray {
    explicit ObservationArray(std::size_t capacity)
        : entries(capacity) { }
    std::vector<std::atomic<Observation*>> entries;
    std::atomic<std::uint32_t> count = 0;
};

struct KeyObservers {
    const SEL key;
    const std::string& keyPath; // the key as a path
    KeyObservers* const next;
    std::atomic<ObservationArray*> array = nullptr;
    std::uint32_t living = 0;

    /// In order, for as long as the lists are pinned or locked.
    template <class Call>
    void each(Call call) const {
        const ObservationArray* const now = array.load(std::memory_order_acquire);
        const std::size_t count = now ? now->count.load(std::memory_order_acquire) : 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (auto* const observation = now->entries[i].load(std::memory_order_acquire))
                call(*observation);
        }
    }
};

/// Observes the rest of a path on the object that its first property holds.
class PathLink final : public NSObject {
public:
    PathLink(NSObject& root, Observation& owner, std::string_view keyPath)
        : m_root(root)
        , m_keyPath(keyPath)
        , m_key(firstKey(keyPath))
        , m_owner(&owner) { }

    const std::string& keyPath() const { return m_keyPath; }

    /// Goes over to the object that the property holds now.
    void follow(NSObject& root) {
        const std::uint64_t turn = ++m_turn;
        const std::shared_ptr<NSObject> related = relatedObject(root, m_key);
        std::shared_ptr<NSObject> former; // ends outside the lock
        const std::lock_guard lock(m_mutex);
        const Observation* const owner = m_owner.load(std::memory_order_acquire);
        // Whoever came later has seen, or will see, the newer object.
        if (!owner || turn != m_turn.load())
            return;
        former = m_related.lock();
        if (former == related && (former || !m_observation))
            return;
        release(former);
        if (related) {
            const auto options =
                static_cast<unsigned>(owner->options) & ~static_cast<unsigned>(Options::initial);
            m_observation = &ObservationInfo::of(*related).add(
                *related, *this, rest(), static_cast<Options>(options), nullptr);
            m_related = related;
        }
    }

    void close() {
        std::shared_ptr<NSObject> former;
        const std::lock_guard lock(m_mutex);
        m_owner.store(nullptr, std::memory_order_release);
        former = m_related.lock();
        release(former);
    }

    void observeValueForKeyPath(
        const std::string&, NSObject&, const NSKeyValueChange& change, const void*) override {
        const std::shared_ptr<NSObject> root = m_root.lock();
        ObservationInfo* const info = root ? ObservationInfo::ifAny(*root) : nullptr;
        if (!info)
            return;
        const ObservationInfo::Pin pin(*info);
        if (const Observation* const owner = m_owner.load(std::memory_order_acquire))
            owner->observer->observeValueForKeyPath(m_keyPath, *root, change, owner->context);
    }

private:
    std::string_view rest() const {
        return std::string_view(m_keyPath).substr(m_keyPath.find('.') + 1);
    }

    void release(const std::shared_ptr<NSObject>& former) {
        // That of a dead object has ended by itself.
        if (Observation* const observation = std::exchange(m_observation, nullptr);
            former && observation)
            ObservationInfo::of(*former).remove(*observation);
        m_related = {};
    }

    const WeakReference m_root;
    const std::string m_keyPath;
    const SEL m_key;
    std::atomic<Observation*> m_owner; // null once closed; read while the root's lists are pinned
    std::atomic<std::uint64_t> m_turn = 0;
    std::mutex m_mutex; // guards what follows
    WeakReference m_related;
    Observation* m_observation = nullptr;
};

namespace {

const std::string& keyPathOf(const Observation& observation) {
    return observation.link ? observation.link->keyPath() : observation.list->keyPath;
}

void tell(const Observation& observation, NSObject& object, const NSKeyValueChange& change) {
    observation.observer->observeValueForKeyPath(
        keyPathOf(observation), object, change, observation.context);
}

std::any newValueFor(const Observation& observation, const NSObject& object) {
    return contains(observation.options, Options::newValue)
        ? valueIfAny(object, keyPathOf(observation))
        : std::any();
}

/// With a path or options.
void tellSpecially(
    Observation& observation, NSObject& object, const ObservationInfo::OldValues& oldValues) {
    if (observation.link)
        observation.link->follow(object);
    NSKeyValueChange change {.newValue = newValueFor(observation, object)};
    const auto old = std::ranges::find(
        oldValues, observation.serial, &ObservationInfo::OldValues::value_type::first);
    if (old != oldValues.end())
        change.oldValue = old->second;
    tell(observation, object, change);
}

} // namespace

void tellInitially(const Observation& observation, NSObject& object) {
    tell(observation, object, {.newValue = newValueFor(observation, object)});
}

ObservationInfo::ObservationInfo()
    : m_serial(nextSerial()) { }

ObservationInfo::~ObservationInfo() {
    std::unique_ptr<KeyObservers> list(m_lists.load(std::memory_order_acquire));
    while (list) {
        list->each([](Observation& observation) {
            if (observation.link)
                observation.link->close();
            delete &observation;
        });
        delete list->array.load(std::memory_order_acquire);
        list.reset(list->next);
    }
}

ObservationInfo& ObservationInfo::of(NSObject& object) {
    if (ObservationInfo* const existing = ifAny(object))
        return *existing;
    auto* const made = new ObservationInfo;
    ObservedKeys* winner = nullptr;
    if (object.m_observations.compare_exchange_strong(winner, made, std::memory_order_acq_rel))
        return *made;
    delete made;
    return static_cast<ObservationInfo&>(*winner);
}

KeyObservers* ObservationInfo::listOf(SEL key) const {
    KeyObservers* list = m_lists.load(std::memory_order_acquire);
    while (list && list->key != key)
        list = list->next;
    return list;
}

Observation& ObservationInfo::add(NSObject& object, NSObject& observer, std::string_view keyPath,
    Options options, const void* context) {
    const SEL key = firstKey(keyPath);
    const bool isPath = keyPath.size() > key.name().size();
    const bool isSimple = !isPath && !contains(options, Options::newValue | Options::oldValue);
    auto* const observation = new Observation {.observer = &observer,
        .context = context,
        .list = nullptr,
        .serial = nextSerial(),
        .options = options,
        .state = isSimple ? State::simple : State::special,
        .link = nullptr};
    if (isPath)
        observation->link = std::make_shared<PathLink>(object, *observation, keyPath);
    const std::shared_ptr<PathLink> link = observation->link;
    if (wantsWill(options))
        ++reasonsForWill;

    Retired former;
    {
        const std::lock_guard lock(m_mutex);
        KeyObservers* list = listOf(key);
        if (!list) {
            list = new KeyObservers {
                .key = key, .keyPath = key.name(), .next = m_lists.load(std::memory_order_acquire)};
            m_lists.store(list, std::memory_order_release);
        }
        ObservationArray* array = list->array.load(std::memory_order_acquire);
        std::uint32_t count = array ? array->count.load(std::memory_order_acquire) : 0;
        if (!array || count == array->entries.size()) {
            auto* const larger =
                new ObservationArray(std::max<std::size_t>(1, std::size_t {2} * list->living));
            count = 0;
            list->each([&](Observation& kept) {
                kept.index = count;
                larger->entries[count++].store(&kept, std::memory_order_release);
            });
            list->array.store(larger, std::memory_order_release);
            if (array)
                former = retire({.array = std::unique_ptr<ObservationArray>(array)});
            array = larger;
        }
        observation->list = list;
        observation->index = count;
        array->entries[count].store(observation, std::memory_order_release);
        array->count.store(count + 1, std::memory_order_release);
        ++list->living;
        mask.fetch_or(bit(key), std::memory_order_relaxed);
    }
    if (link) {
        try {
            link->follow(object);
        } catch (...) {
            remove(*observation);
            throw;
        }
    }
    return *observation;
}

void ObservationInfo::takeOut(Observation& observation) {
    observation.state.store(State::removed, std::memory_order_release);
    observation.list->array.load(std::memory_order_acquire)
        ->entries[observation.index]
        .store(nullptr, std::memory_order_release);
    if (wantsWill(observation.options))
        --reasonsForWill;
    if (--observation.list->living > 0)
        return;
    std::uint64_t observed = 0;
    for (auto* list = m_lists.load(std::memory_order_acquire); list; list = list->next)
        observed |= list->living > 0 ? bit(list->key) : 0;
    mask.store(observed, std::memory_order_relaxed);
}

void ObservationInfo::remove(Observation& observation) {
    Retired former; // ends outside the lock
    std::unique_lock lock(m_mutex);
    takeOut(observation);
    if (observation.link) {
        lock.unlock();
        observation.link->close();
        lock.lock();
    }
    former = retire({.observation = std::unique_ptr<Observation>(&observation)});
}

/// Keeps what a walk may still meet. Answers it where there is no walk; the mutex must be locked.
ObservationInfo::Retired ObservationInfo::retire(Retired retired) {
    // The exchange makes a walk that begins later see what was done before it.
    if (m_state.fetch_or(hasRetired, std::memory_order_acq_rel) < onePin) {
        if (m_retired.empty())
            m_state.fetch_and(~hasRetired, std::memory_order_acq_rel);
        return retired;
    }
    if (retired.observation)
        retired.observer = retired.observation->observer->weak_from_this().lock();
    m_retired.push_back(std::move(retired));
    return {};
}

/// Frees what was retired if only the caller has the lists pinned.
void ObservationInfo::collect() {
    std::vector<Retired> retired; // ends outside the lock: what dies may come back here
    const std::lock_guard lock(m_mutex);
    if (m_state.fetch_add(0, std::memory_order_acq_rel) >= 2 * onePin)
        return;
    retired.swap(m_retired);
    m_state.fetch_and(~hasRetired, std::memory_order_acq_rel);
}

void ObservationInfo::unpin() {
    std::uint32_t state = m_state.load(std::memory_order_acquire);
    do {
        while (state >= onePin && state < 2 * onePin && (state & hasRetired) != 0
            && (state & objectIsDead) == 0) {
            collect();
            state = m_state.load(std::memory_order_acquire);
        }
    } while (!m_state.compare_exchange_weak(
        state, state - onePin, std::memory_order_acq_rel, std::memory_order_acquire));
    if ((state & objectIsDead) != 0 && state < 2 * onePin)
        delete this;
}

Observation* ObservationInfo::find(
    const NSObject& observer, std::string_view keyPath, const void* context) {
    const std::lock_guard lock(m_mutex);
    const KeyObservers* const list = listOf(firstKey(keyPath));
    Observation* found = nullptr;
    if (list) {
        list->each([&](Observation& observation) {
            if (observation.observer == &observer && observation.context == context
                && keyPathOf(observation) == keyPath)
                found = &observation;
        });
    }
    return found;
}

ObservationInfo::OldValues ObservationInfo::willChange(NSObject& object, SEL key) {
    OldValues oldValues;
    const Pin pin(*this);
    const KeyObservers* const list = listOf(key);
    if (!list)
        return oldValues;
    list->each([&](const Observation& observation) {
        if (observation.state.load(std::memory_order_acquire) == State::removed
            || !wantsWill(observation.options))
            return;
        NSKeyValueChange change {.isPrior = true};
        if (contains(observation.options, Options::oldValue)) {
            change.oldValue = valueIfAny(object, keyPathOf(observation));
            oldValues.emplace_back(observation.serial, change.oldValue);
        }
        if (contains(observation.options, Options::prior))
            tell(observation, object, change);
    });
    return oldValues;
}

void ObservationInfo::didChange(NSObject& object, SEL key, const OldValues& oldValues) {
    const Pin pin(*this);
    const KeyObservers* const list = listOf(key);
    if (!list)
        return;
    static const auto& change = *new NSKeyValueChange;
    const std::string& keyPath = list->keyPath;
    list->each([&](Observation& observation) {
        const State state = observation.state.load(std::memory_order_acquire);
        if (state == State::simple) [[likely]]
            observation.observer->observeValueForKeyPath(
                keyPath, object, change, observation.context);
        else if (state == State::special)
            tellSpecially(observation, object, oldValues);
    });
}

void ObservationInfo::objectDies(NSObject& object) {
    auto* const info = static_cast<ObservationInfo*>(
        object.m_observations.exchange(nullptr, std::memory_order_acq_rel));
    if (!info)
        return;
    if (info->m_state.load(std::memory_order_acquire) < onePin) {
        delete info;
        return;
    }

    // A walk is under way: it calls no more observers, but may be within one.
    std::vector<std::shared_ptr<PathLink>> links;
    {
        const std::lock_guard lock(info->m_mutex);
        for (auto* list = info->m_lists.load(std::memory_order_acquire); list; list = list->next) {
            list->each([&](Observation& observation) {
                if (observation.link)
                    links.push_back(observation.link);
                info->takeOut(observation);
                info->retire({.observation = std::unique_ptr<Observation>(&observation)});
            });
        }
    }
    for (const auto& link : links)
        link->close();
    if (info->m_state.fetch_or(objectIsDead, std::memory_order_acq_rel) < onePin)
        delete info;
}

} // namespace kw::detail
