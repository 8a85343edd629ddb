// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Observations.h>

#include <KWToolkit/platform/foundation/Hazards.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/ObjectExtras.h>

#include <algorithm>
#include <functional>
#include <ranges>
#include <string>

namespace kw::detail {

namespace {

using Options = NSKeyValueObservingOptions;

std::uint64_t nextSerial() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

SEL firstKey(std::string_view keyPath) { return SEL(keyPath.substr(0, keyPath.find('.'))); }

/// What the property holds; null also where it is none or holds something else.
std::shared_ptr<NSObject> objectHeldBy(NSObject& object, SEL key) {
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

bool wantsWill(Options options) { return options.oldValue || options.prior; }

} // namespace

/// The observations of one key in the order in which they were added, with nulls for those that
/// were removed. Places are not used again, so that a walk does not meet what is added during it.
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
        const ObservationArray* const now = array.load();
        if (!now)
            return;
        const auto* const end = now->entries.data() + now->count.load();
        for (const auto* entry = now->entries.data(); entry != end; ++entry) {
            if (auto* const observation = entry->load())
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
        , m_options(owner.options)
        , m_owner(&owner) {
        m_options.initial = false;
    }

    const std::string& keyPath() const { return m_keyPath; }

    /// Goes over to the object that the property holds now.
    void follow(NSObject& root) {
        const std::uint64_t turn = ++m_turn;
        Rest rest;
        const std::shared_ptr<NSObject> related = objectHeldBy(root, m_key);
        {
            std::shared_ptr<NSObject> present; // ends outside the lock
            const std::lock_guard lock(m_mutex);
            present = m_rest.related.lock();
            if (m_rest.observation && present == related)
                return;
        }
        // Without the lock, as the getters of longer paths are called here.
        if (related)
            rest = {WeakReference(related), addObserver(*related, *this, restOfPath(), m_options)};
        {
            const std::lock_guard lock(m_mutex);
            // Whoever came later has seen, or will see, the newer object.
            if (m_owner.load() && turn == m_turn.load())
                std::swap(rest, m_rest);
        }
        rest.end();
    }

    void close() {
        Rest rest;
        {
            const std::lock_guard lock(m_mutex);
            m_owner.store(nullptr);
            std::swap(rest, m_rest);
        }
        rest.end();
    }

    void observeValueForKeyPath(
        const std::string&, NSObject&, const NSKeyValueChange& change, const void*) override {
        const std::shared_ptr<NSObject> root = m_root.lock();
        const ObservationInfo* const info = root ? ObservationInfo::ifAny(*root) : nullptr;
        if (!info)
            return;
        const HazardPin pin(info);
        if (const Observation* const owner = m_owner.load())
            owner->observer->observeValueForKeyPath(m_keyPath, *root, change, owner->context);
    }

private:
    struct Rest {
        WeakReference related;
        NSKeyValueObservation observation = nullptr;

        void end() const {
            if (observation)
                ObservationInfo::remove(related, *observation);
        }
    };

    std::string_view restOfPath() const {
        return std::string_view(m_keyPath).substr(m_keyPath.find('.') + 1);
    }

    const WeakReference m_root;
    const std::string m_keyPath;
    const SEL m_key;
    Options m_options;
    std::atomic<Observation*> m_owner; // null once closed; read while the root's lists are pinned
    std::atomic<std::uint64_t> m_turn = 0;
    std::mutex m_mutex; // guards what follows
    Rest m_rest;
};

const NSKeyValueChange& changeWithoutDetails = *new NSKeyValueChange;

namespace {

const std::string& keyPathOf(const Observation& observation) {
    return observation.link ? observation.link->keyPath() : observation.list->keyPath;
}

void tell(const Observation& observation, NSObject& object, const NSKeyValueChange& change) {
    observation.observer->observeValueForKeyPath(
        keyPathOf(observation), object, change, observation.context);
}

std::any newValueFor(const Observation& observation, const NSObject& object) {
    return observation.options.newValue ? valueIfAny(object, keyPathOf(observation)) : std::any();
}

/// With a path or options.
void tellSpecially(Observation& observation, NSObject& object, const OldValues& oldValues) {
    if (observation.link)
        observation.link->follow(object);
    if (!observation.tell.load()) // a getter on the path has removed it
        return;
    NSKeyValueChange change {.newValue = newValueFor(observation, object)};
    const auto old =
        std::ranges::find(oldValues, observation.serial, &OldValues::value_type::first);
    if (old != oldValues.end())
        change.oldValue = old->second;
    if (observation.tell.load())
        tell(observation, object, change);
}

/// What was taken out of lists that are being walked through.
struct Retired {
    std::vector<std::unique_ptr<Observation>> observations;
    std::vector<std::shared_ptr<NSObject>> observers; // which may be about to be called
    std::unique_ptr<ObservationInfo> info;

    void add(Observation& observation, bool isWalkedThrough) {
        if (isWalkedThrough)
            observers.push_back(observation.observer->weak_from_this().lock());
        if (!observation.isPartOfObserver)
            observations.emplace_back(&observation);
    }
};

} // namespace

void tellSimply(Observation& observation, NSObject& object, const OldValues&) {
    tell(observation, object, changeWithoutDetails);
}

void tellInitially(const Observation& observation, NSObject& object) {
    tell(observation, object, {.newValue = newValueFor(observation, object)});
}

ObservationInfo::ObservationInfo()
    : m_serial(nextSerial()) { }

ObservationInfo::~ObservationInfo() {
    std::unique_ptr<KeyObservers> list(m_lists.load());
    while (list) {
        delete list->array.load();
        list.reset(list->next);
    }
}

ObservationInfo& ObservationInfo::of(NSObject& object) {
    if (ObservationInfo* const existing = ifAny(object))
        return *existing;
    std::unique_ptr<ObservationInfo> made(new ObservationInfo);
    ObservedKeys* winner = nullptr;
    if (object.m_observations.compare_exchange_strong(winner, made.get()))
        return *made.release();
    return static_cast<ObservationInfo&>(*winner);
}

KeyObservers* ObservationInfo::listOf(SEL key) const {
    KeyObservers* list = m_lists.load();
    while (list && list->key != key)
        list = list->next;
    return list;
}

KeyObservers& ObservationInfo::listFor(SEL key) {
    KeyObservers* list = listOf(key);
    if (!list) {
        list = new KeyObservers {.key = key, .keyPath = key.name(), .next = m_lists.load()};
        m_lists.store(list);
    }
    return *list;
}

/// Makes room for twice as many as there are; the mutex must be locked.
ObservationInfo::FormerArray ObservationInfo::rebuild(KeyObservers& list) {
    auto array = std::make_unique<ObservationArray>(
        std::max(std::size_t {1}, std::size_t {2} * list.living));
    std::uint32_t count = 0;
    list.each([&](Observation& kept) {
        kept.index = count;
        array->entries[count++].store(&kept, std::memory_order_relaxed);
    });
    array->count.store(count, std::memory_order_relaxed);
    return FormerArray(list.array.exchange(array.release()));
}

void ObservationInfo::free(const void* lists, FormerArray array) {
    if (array && isPinned(lists))
        retire(lists, std::shared_ptr<ObservationArray>(std::move(array)));
}

void ObservationInfo::add(NSObject& object, std::string_view keyPath, Observation& observation,
    Observation::Tell simply) {
    const SEL key = firstKey(keyPath);
    const bool isPath = keyPath.size() > key.name().size();
    const bool isSimple = !isPath && !observation.options.newValue && !observation.options.oldValue;
    observation.serial = nextSerial();
    observation.tell.store(isSimple ? simply : &tellSpecially, std::memory_order_relaxed);
    if (isPath)
        observation.link = std::make_shared<PathLink>(object, observation, keyPath);
    if (wantsWill(observation.options))
        ++reasonsForWill;

    const std::shared_ptr<PathLink> link = observation.link;
    FormerArray former;
    {
        const std::lock_guard lock(m_mutex);
        KeyObservers& list = listFor(key);
        if (const auto* const array = list.array.load();
            !array || array->count.load() == array->entries.size())
            former = rebuild(list);
        ObservationArray& array = *list.array.load();
        const std::uint32_t count = array.count.load(std::memory_order_relaxed);
        observation.list = &list;
        observation.index = count;
        array.entries[count].store(&observation, std::memory_order_relaxed);
        array.count.store(count + 1, std::memory_order_release);
        ++list.living;
        mask.fetch_or(bit(key), std::memory_order_relaxed);
    }
    free(this, std::move(former));
    if (!link)
        return;
    try {
        link->follow(object);
    } catch (...) {
        remove(observation);
        throw;
    }
}

/// No walk that begins later meets it; the mutex must be locked.
void ObservationInfo::unlist(Observation& observation) {
    KeyObservers& list = *observation.list;
    observation.tell.store(nullptr);
    list.array.load()->entries[observation.index].store(nullptr);
    if (wantsWill(observation.options))
        --reasonsForWill;
    if (--list.living > 0)
        return;
    std::uint64_t observed = 0;
    for (auto* other = m_lists.load(); other; other = other->next)
        observed |= other->living > 0 ? bit(other->key) : 0;
    mask.store(observed, std::memory_order_relaxed);
}

/// The same, and has what is left walked through in no more than its own time.
ObservationInfo::FormerArray ObservationInfo::takeOut(Observation& observation) {
    unlist(observation);
    constexpr std::uint32_t sparse = 4;
    constexpr std::uint32_t few = 16;
    KeyObservers& list = *observation.list;
    const std::uint32_t count = list.array.load()->count.load();
    return count > few && count / sparse > list.living ? rebuild(list) : nullptr;
}

void ObservationInfo::finish(const void* lists, Observation& observation, FormerArray array) {
    free(lists, std::move(array));
    if (observation.link)
        observation.link->close();
    if (isPinned(lists)) {
        auto retired = std::make_shared<Retired>();
        retired->add(observation, true);
        retire(lists, std::move(retired));
    } else if (!observation.isPartOfObserver) {
        delete &observation;
    }
}

void ObservationInfo::remove(Observation& observation) {
    std::unique_lock lock(m_mutex);
    FormerArray former = takeOut(observation);
    lock.unlock();
    finish(this, observation, std::move(former));
}

void ObservationInfo::remove(const WeakReference& object, Observation& observation) {
    const void* lists = nullptr;
    FormerArray former;
    // The lists live as long as the object's place in its weak references is taken.
    object.whileItLives([&](const NSObject& living) {
        ObservationInfo& info = *ifAny(living);
        const std::lock_guard lock(info.m_mutex);
        if (!observation.tell.load())
            return;
        former = info.takeOut(observation);
        lists = &info;
    });
    if (lists)
        finish(lists, observation, std::move(former));
}

bool ObservationInfo::removeNewest(
    const NSObject& observer, std::string_view keyPath, const void* context) {
    std::unique_lock lock(m_mutex);
    const KeyObservers* const list = listOf(firstKey(keyPath));
    Observation* found = nullptr;
    if (list) {
        list->each([&](Observation& observation) {
            if (observation.observer == &observer && observation.context == context
                && keyPathOf(observation) == keyPath)
                found = &observation;
        });
    }
    if (!found)
        return false;
    FormerArray former = takeOut(*found);
    lock.unlock();
    finish(this, *found, std::move(former));
    return true;
}

OldValues ObservationInfo::willChange(NSObject& object, SEL key) {
    OldValues oldValues;
    const HazardPin pin(this);
    const KeyObservers* const list = listOf(key);
    if (!list)
        return oldValues;
    list->each([&](const Observation& observation) {
        if (!observation.tell.load() || !wantsWill(observation.options))
            return;
        NSKeyValueChange change {.isPrior = true};
        if (observation.options.oldValue) {
            change.oldValue = valueIfAny(object, keyPathOf(observation));
            oldValues.emplace_back(observation.serial, change.oldValue);
        }
        if (observation.options.prior && observation.tell.load())
            tell(observation, object, change);
    });
    return oldValues;
}

void ObservationInfo::didChange(NSObject& object, SEL key, const OldValues& oldValues) {
    const HazardPin pin(this);
    if (const KeyObservers* const list = listOf(key))
        list->each([&](Observation& observation) {
            if (const auto tell = observation.tell.load())
                tell(observation, object, oldValues);
        });
}

void ObservationInfo::objectDies(NSObject& object) {
    auto retired = std::make_unique<Retired>();
    std::vector<std::shared_ptr<PathLink>> links;
    ObjectExtras::forget(object, [&] {
        std::unique_ptr<ObservationInfo> info(
            static_cast<ObservationInfo*>(object.m_observations.exchange(nullptr)));
        if (!info)
            return;
        const std::lock_guard lock(info->m_mutex);
        const bool isWalkedThrough = isPinned(info.get());
        for (const auto* list = info->m_lists.load(); list; list = list->next) {
            list->each([&](Observation& observation) {
                info->unlist(observation);
                retired->add(observation, isWalkedThrough);
                if (observation.link)
                    links.push_back(observation.link);
            });
        }
        retired->info = std::move(info);
    });
    for (const auto& link : links)
        link->close();
    // A walk that is under way calls no more observers, but may be within one.
    if (const void* const lists = retired->info.get(); lists && isPinned(lists))
        retire(lists, std::move(retired));
}

} // namespace kw::detail
