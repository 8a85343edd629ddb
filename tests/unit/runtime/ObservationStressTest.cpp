// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Observation from many threads at once. What each sanitizer sees counts as much as what is asked
// here.
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/NSOperationQueue.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <barrier>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace {

using namespace kw;

/// An object that many threads use, related to another.
class Model : public NSObject {
public:
    ~Model() override {
        *m_isAlive = false;
        if (const auto watched = m_watched.lock())
            removeObserverWithBlockToken(*watched, m_token);
    }
    /// Observes another one from now on, as long as both live.
    void watch(const std::shared_ptr<Model>& other) {
        m_watched = other;
        m_token = addObserverForKeyPath(*other, "value", [](NSObject&, const auto&) { });
    }

    int value() const { return m_value; }
    void setValue(int value) { setAndNotify(*this, valueKey, m_value, value); }
    std::shared_ptr<Model> related() const {
        const std::lock_guard lock(m_mutex);
        return m_related;
    }
    void setRelated(std::shared_ptr<Model> related) {
        changeValueForKey(*this, relatedKey, [&] {
            const std::lock_guard lock(m_mutex);
            m_related.swap(related); // what was there dies later, without the lock
        });
    }
    /// Outlives the object.
    std::shared_ptr<const std::atomic<bool>> isAlive() const { return m_isAlive; }

    static Class& classObject() {
        static Class object("Model", NSObject::classObject(), {},
            {property("value", &Model::value, &Model::setValue),
                property("related", &Model::related, &Model::setRelated)});
        return object;
    }
    Class& isa() const override { return classObject(); }

private:
    static inline const SEL valueKey {"value"}, relatedKey {"related"};
    std::atomic<int> m_value = 0;
    mutable std::mutex m_mutex;
    std::shared_ptr<Model> m_related;
    std::weak_ptr<Model> m_watched;
    std::string m_token;
    std::shared_ptr<std::atomic<bool>> m_isAlive = std::make_shared<std::atomic<bool>>(true);
};

enum class Habit { countCalls, removeItself, addAnother, letGoOfTheObject };

/// What a task holds; it is freed with the task.
struct Registration {
    static inline std::atomic<int> instances = 0;
    Registration() { ++instances; }
    ~Registration() { --instances; }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    std::size_t level = 0;
    Habit habit = Habit::countCalls;
    std::shared_ptr<NSOperationQueue> queue;
    std::weak_ptr<Model> model;
    const void* address = nullptr;
    std::shared_ptr<const std::atomic<bool>> modelIsAlive;
    std::mutex mutex;
    std::string token; // guarded; empty until it is known, and once it is used
    std::atomic<std::thread::id> remover {};
    std::atomic<int> calls = 0;
    std::atomic<int> callsAfterRemoval = 0;
};

constexpr int threadCount = 8;
constexpr int roundsEach = 8'000;
constexpr int concurrentOperations = 3;

/// Objects of three levels, each related to one of the next, and what observes them.
class World {
public:
    World() {
        m_serial->setMaxConcurrentOperationCount(1);
        m_concurrent->setMaxConcurrentOperationCount(concurrentOperations);
        for (auto& level : m_models)
            std::ranges::generate(level, std::make_shared<Model>);
    }

    void liveOn(unsigned seed) {
        std::mt19937 random(seed);
        for (int round = 0; round < roundsEach; ++round) {
            const std::size_t level = random() % m_models.size();
            switch (random() % 9) {
            case 0:
            case 1:
                add(level, random());
                break;
            case 2:
                if (const auto registration = takeAny(random()))
                    remove(*registration);
                break;
            case 3:
                any(level, random())->setRelated(random() % 8 ? next(level, random()) : nullptr);
                break;
            case 4:
                replace(level, random());
                break;
            case 5:
                changeWhatDiesOfIt();
                break;
            default:
                any(level, random())->setValue(round);
            }
        }
    }

    void waitForQueues() const {
        m_serial->waitUntilAllOperationsAreFinished();
        m_concurrent->waitUntilAllOperationsAreFinished();
    }

    /// What is left of the registrations follows its path to where it leads now.
    void checkThatAllFollow() const {
        for (const auto& registration : m_registrations) {
            auto last = registration->model.lock();
            if (!last || registration->token.empty() || registration->habit != Habit::countCalls)
                continue;
            const auto model = last;
            for (std::size_t level = registration->level; last && level + 1 < m_models.size();
                ++level)
                last = last->related();
            const int calls = registration->calls;
            if (last)
                last->setValue(-1);
            waitForQueues();
            EXPECT_EQ(registration->calls, calls + (last ? 1 : 0)) << registration->level;
        }
    }

    void removeAll() {
        while (const auto registration = takeAny(0))
            remove(*registration);
    }

    std::atomic<int> mistakes = 0;

private:
    using Level = std::array<std::shared_ptr<Model>, 3>;

    std::shared_ptr<Model> any(std::size_t level, std::size_t choice) {
        const std::lock_guard lock(m_mutex);
        return m_models[level][choice % Level().size()];
    }
    std::shared_ptr<Model> next(std::size_t level, std::size_t choice) {
        return level + 1 < m_models.size() ? any(level + 1, choice) : nullptr;
    }
    /// Lets go of an object, perhaps for good.
    void replace(std::size_t level, std::size_t choice) {
        auto model = std::make_shared<Model>();
        model->setRelated(next(level, choice / 8));
        model->watch(any(level, choice));
        const std::lock_guard lock(m_mutex);
        m_models[level][choice % Level().size()].swap(model);
    }

    /// The first task lets go of the object that its setter runs on.
    void changeWhatDiesOfIt() {
        auto model = std::make_shared<Model>();
        addObserverForKeyPath(
            *model, "value", [&model](NSObject&, const NSKeyValueChange&) { model.reset(); });
        addObserverForKeyPath(*model, "value",
            [this, isAlive = model->isAlive()](NSObject&, const NSKeyValueChange&) {
                if (!*isAlive)
                    ++mistakes;
            });
        model->setValue(1);
    }

    void add(std::size_t level, std::size_t choice, Habit habit) {
        const std::shared_ptr<NSOperationQueue> queues[] {nullptr, nullptr, m_serial, m_concurrent};
        const auto model = any(level, choice);
        const auto registration = std::make_shared<Registration>();
        registration->level = level;
        registration->habit = habit;
        registration->queue = queues[choice / 8 % std::size(queues)];
        registration->model = model;
        registration->address = model.get();
        registration->modelIsAlive = model->isAlive();
        constexpr const char* paths[] {"related.related.value", "related.value", "value"};
        auto token = addObserverForKeyPath(*model, paths[level], registration->queue,
            [this, registration](
                NSObject& object, const NSKeyValueChange&) { call(*registration, object); });
        {
            const std::lock_guard lock(registration->mutex);
            registration->token = std::move(token);
        }
        const std::lock_guard lock(m_mutex);
        m_registrations.push_back(registration);
    }
    void add(std::size_t level, std::size_t choice) {
        add(level, choice, static_cast<Habit>(choice / 64 % 4));
    }

    std::shared_ptr<Registration> takeAny(std::size_t choice) {
        const std::lock_guard lock(m_mutex);
        if (m_registrations.empty())
            return nullptr;
        std::swap(m_registrations[choice % m_registrations.size()], m_registrations.back());
        auto taken = std::move(m_registrations.back());
        m_registrations.pop_back();
        return taken;
    }
    /// Whoever added it; its own task may be the one to do so.
    static void remove(Registration& registration) {
        const auto model = registration.model.lock();
        std::unique_lock lock(registration.mutex);
        const std::string token = std::exchange(registration.token, {});
        lock.unlock();
        if (!model || token.empty())
            return;
        removeObserverWithBlockToken(*model, token);
        registration.remover = std::this_thread::get_id();
    }

    void call(Registration& registration, NSObject& object) {
        // Calls that had begun on other threads.
        const int allowed = !registration.queue ? threadCount - 1
            : registration.queue == m_serial    ? 1
                                                : concurrentOperations;
        const auto remover = registration.remover.load();
        if (&object != registration.address || !*registration.modelIsAlive)
            ++mistakes;
        if (!registration.queue && remover == std::this_thread::get_id())
            ++mistakes;
        if (remover != std::thread::id() && ++registration.callsAfterRemoval > allowed)
            ++mistakes;

        if (registration.calls++ > 0)
            return;
        if (registration.habit == Habit::removeItself)
            remove(registration);
        else if (registration.habit == Habit::addAnother)
            add(registration.level, registration.level, Habit::countCalls);
        else if (registration.habit == Habit::letGoOfTheObject)
            replace(registration.level, 0);
    }

    std::mutex m_mutex;
    std::array<Level, 3> m_models;
    std::vector<std::shared_ptr<Registration>> m_registrations;
    const std::shared_ptr<NSOperationQueue> m_serial = std::make_shared<NSOperationQueue>();
    const std::shared_ptr<NSOperationQueue> m_concurrent = std::make_shared<NSOperationQueue>();
};

TEST(ObservationStress, ManyThreadsAddRemoveChangeAndDestroy) {
    HeadlessConsole console;
    const ServiceScope scope(console);
    {
        World world;
        {
            std::array<std::jthread, threadCount> threads;
            for (unsigned seed = 0; seed < threadCount; ++seed)
                threads[seed] = std::jthread([&world, seed] { world.liveOn(seed); });
        }
        world.waitForQueues();
        world.checkThatAllFollow();
        world.removeAll();
        world.waitForQueues();
        EXPECT_EQ(world.mistakes, 0);
    }
    EXPECT_EQ(Registration::instances, 0);
    EXPECT_THAT(console.lines(), testing::IsEmpty()); // no token was unknown
}

TEST(ObservationStress, APathFollowsTheLastOfManyReplacements) {
    const auto root = std::make_shared<Model>();
    std::atomic<int> calls = 0;
    addObserverForKeyPath(
        *root, "related.value", [&calls](NSObject&, const NSKeyValueChange&) { ++calls; });
    std::barrier turn(threadCount);
    const auto replace = [&](bool checks) {
        for (int round = 0; round < roundsEach / 4; ++round) {
            for (int times = 0; times < 3; ++times)
                root->setRelated(std::make_shared<Model>());
            turn.arrive_and_wait();
            if (checks) {
                calls = 0;
                root->related()->setValue(1);
                EXPECT_EQ(calls, 1) << round;
            }
            turn.arrive_and_wait();
        }
    };
    std::array<std::jthread, threadCount> threads;
    for (std::size_t i = 0; i < threadCount; ++i)
        threads[i] = std::jthread(replace, i == 0);
}

} // namespace
