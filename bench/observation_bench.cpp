// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A property's observers beside the signals of Qt, Boost and libsigc++, and beside a bare loop.
// Flags besides those of the benchmark library:
//   --one-thread    starts no second thread: some libraries save their atomic operations then
//   --growth        only the tables of what many observers take, in time and memory
#include <KWToolkit/platform/foundation/AssociatedObjects.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>
#include <bench/observation/Measure.h>

#include <future>
#include <string_view>
#include <thread>

namespace {

using namespace kw;
using namespace kw::bench;

class Model : public NSObject {
public:
    int value() const { return m_value; }
    [[gnu::noinline]] void setValue(int value) { setAndNotify(*this, valueKey, m_value, value); }
    int other() const { return m_other; }

    static Class& classObject() {
        static Class object("Model", NSObject::classObject(), {},
            {property("value", &Model::value, &Model::setValue), property("other", &Model::other)});
        return object;
    }
    Class& isa() const override { return classObject(); }

private:
    static inline const SEL valueKey {"value"};
    int m_value = 0;
    int m_other = 0;
};

std::string count(NSObject& object, const char* keyPath, std::int64_t& counter) {
    return addObserverForKeyPath(
        object, keyPath, [&counter](NSObject&, const NSKeyValueChange&) { ++counter; });
}

struct OurWay {
    using Model = ::Model;
    using Handle = std::string;
    static Handle add(Model& model, std::int64_t& counter) {
        return count(model, "value", counter);
    }
    static void remove(Model& model, const Handle& handle) {
        removeObserverWithBlockToken(model, handle);
    }
};

/// An object whose observers look at another one.
class Parent : public NSObject {
public:
    void setValue(int value) { m_child->setValue(value); }

    static Class& classObject() {
        static Class object(
            "Parent", NSObject::classObject(), {}, {property("child", &Parent::m_child)});
        return object;
    }
    Class& isa() const override { return classObject(); }

private:
    std::shared_ptr<Model> m_child = std::make_shared<Model>();
};

struct OurPath {
    using Model = Parent;
    using Handle = std::string;
    static Handle add(Model& model, std::int64_t& counter) {
        return count(model, "child.value", counter);
    }
    static void remove(Model& model, const Handle& handle) {
        removeObserverWithBlockToken(model, handle);
    }
};

/// What observing cannot take less than.
class LoopModel {
public:
    using Observer = std::function<void(LoopModel&, const NSKeyValueChange&)>;
    std::vector<Observer> observers;

    [[gnu::noinline]] void setValue(int value) {
        m_value = value;
        if (observers.empty())
            return;
        const NSKeyValueChange change;
        for (const Observer& observer : observers)
            observer(*this, change);
    }

private:
    int m_value = 0;
};

struct Loop {
    using Model = LoopModel;
    using Handle = std::size_t;
    static Handle add(Model& model, std::int64_t& counter) {
        model.observers.emplace_back(
            [&counter](LoopModel&, const NSKeyValueChange&) { ++counter; });
        return model.observers.size();
    }
};

/// The same object without observers to tell.
class PlainModel : public NSObject {
public:
    [[gnu::noinline]] void setValue(int value) { m_value = value; }

private:
    int m_value = 0;
};

template <class M>
void setUnobserved(benchmark::State& state, M& model) {
    int value = 0;
    for (auto _ : state)
        unknown(model).setValue(++value);
}

void setPlain(benchmark::State& state) {
    PlainModel model;
    setUnobserved(state, model);
}
void setNeverObserved(benchmark::State& state) {
    Model model;
    setUnobserved(state, model);
}
void setReferenced(benchmark::State& state) {
    Model model;
    const WeakReference reference(model);
    static const char key = 0;
    objc_setAssociatedObject(
        model, &key, std::make_shared<Model>(), AssociationPolicy::retainNonatomic);
    setUnobserved(state, model);
}
void setOtherObserved(benchmark::State& state) {
    Model model;
    std::int64_t counter = 0;
    count(model, "other", counter);
    setUnobserved(state, model);
}
void setNoLongerObserved(benchmark::State& state) {
    Model model;
    std::int64_t counter = 0;
    removeObserverWithBlockToken(model, count(model, "value", counter));
    setUnobserved(state, model);
}

BENCHMARK(setPlain);
BENCHMARK(setNeverObserved);
BENCHMARK(setReferenced);
BENCHMARK(setOtherObserved);
BENCHMARK(setNoLongerObserved);
const bool registered = registerPeer<OurWay>("Ours") && registerPeer<OurPath>("OursPath");

void printTables() {
    std::printf("\nNanoseconds for each observer of one object to be added, told, removed in three "
                "orders, and "
                "to end with it;\nand for a change when all but one have been removed\n"
                "%-12s %7s %8s %8s %9s %9s %9s %9s %9s\n",
        "", "count", "add", "told", "first on", "last on", "shuffled", "with it", "one left");
    for (const Peer& peer : peers())
        peer.printGrowth(peer.name.c_str());
    std::printf("\nBytes for each of 100,000 observations\n%-12s %12s %12s\n", "", "of one object",
        "of each one");
    for (const Peer& peer : peers())
        peer.printMemory(peer.name.c_str());
}

void printVerdicts(const RatioReporter& reporter) {
    std::printf("\nBeside the fastest peer, and the loop\n");
    for (const std::string count : {"/0", "/1", "/10", "/100"}) {
        std::string best;
        for (const Peer& peer : peers()) {
            const std::string name = "notify/" + peer.name + count;
            const auto time = reporter.time(name);
            if (!peer.name.starts_with("Ours") && time && time < reporter.time(best).value_or(1e9))
                best = name;
        }
        reporter.printRatio("notify/Ours" + count, best);
        reporter.printRatio("notify/Ours" + count, "notify/Loop" + count);
        reporter.printRatio("notify/OursPath" + count, "notify/Ours" + count);
    }
    std::printf("\nNanoseconds more than a plain setter takes\n");
    for (const char* const name :
        {"setNeverObserved", "setReferenced", "setOtherObserved", "setNoLongerObserved"}) {
        if (const auto time = reporter.time(name), plain = reporter.time("setPlain"); time && plain)
            std::printf("%-42s %9.2f\n", name, *time - *plain);
    }
}

} // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    const auto takeFlag = [&](std::string_view flag) { return std::erase(arguments, flag) > 0; };
    const bool onlyTables = takeFlag("--growth");
    // Lives as long as the process, as a host's threads do.
    if (!takeFlag("--one-thread"))
        std::thread([] { std::promise<void>().get_future().wait(); }).detach();
    registerNotify<Loop>("Loop");
    if (!initializeInTurns(static_cast<int>(arguments.size()), arguments.data(), 9, "0.05"))
        return 2;
    if (!onlyTables) {
        RatioReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        printVerdicts(reporter);
    }
    if (benchmark::GetBenchmarkFilter().empty())
        printTables();
}
