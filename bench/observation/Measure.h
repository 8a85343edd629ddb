// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What is measured of each way to hear of a property's changes.
#pragma once

#include <bench/RatioReporter.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace kw::bench {

/// The object behind a pointer that the compiler knows nothing about.
template <class T>
T& unknown(T& object) {
    T* pointer = &object;
    // g++ 12 may lose the pointer in benchmark::DoNotOptimize.
    asm volatile("" : "+r"(pointer) : : "memory");
    return *pointer;
}

/// An object with so many observers, each of which counts its calls.
///
/// A way has a `Model` with `setValue`, a `Handle` that an observer keeps, and the functions `add`
/// and `remove`.
template <class Way>
struct Observed {
    explicit Observed(std::size_t capacity)
        : counters(capacity) {
        handles.reserve(capacity);
    }
    void addAll() {
        for (std::int64_t& counter : counters)
            handles.push_back(Way::add(*model, counter));
    }

    std::vector<std::int64_t> counters;
    std::vector<typename Way::Handle> handles;
    // The model is the first to go.
    std::shared_ptr<typename Way::Model> model = std::make_shared<typename Way::Model>();
};

template <class Way>
void notify(benchmark::State& state) {
    Observed<Way> observed(static_cast<std::size_t>(state.range()));
    observed.addAll();
    int value = 0;
    for (auto _ : state)
        unknown(*observed.model).setValue(++value);
    for (const std::int64_t counter : observed.counters) {
        if (counter != value)
            state.SkipWithError("an observer was not told");
    }
}

template <class Way>
void addAndRemove(benchmark::State& state) {
    Observed<Way> observed(static_cast<std::size_t>(state.range()));
    observed.addAll();
    std::int64_t counter = 0;
    for (auto _ : state) {
        auto handle = Way::add(unknown(*observed.model), counter);
        Way::remove(*observed.model, handle);
    }
}

/// The thread's time on the processor, in nanoseconds.
inline double processorTime() {
    std::timespec time {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// The median of the nanoseconds that `work` takes for each of `count`. `make` gives it something
/// new to work on each time, whose making and end do not count.
template <class Make, class Work>
double nanosecondsEach(std::size_t count, const Make& make, const Work& work) {
    std::vector<double> times(std::max<std::size_t>(5, 100'000 / count));
    for (double& time : times) {
        auto object = make();
        const double start = processorTime();
        work(*object);
        time = processorTime() - start;
    }
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle / static_cast<double>(count);
}

/// Prints the nanoseconds for each of more and more observers of one object, and for a change when
/// all but one have been removed.
template <class Way>
void printGrowth(const char* name) {
    for (const std::size_t count : {1'000, 10'000, 100'000}) {
        const auto without = [&] { return std::make_unique<Observed<Way>>(count); };
        const auto with = [&] {
            auto observed = without();
            observed->addAll();
            return observed;
        };
        const auto removing = [](const std::vector<std::size_t>& order) {
            return [&](Observed<Way>& observed) {
                for (const std::size_t place : order)
                    Way::remove(*observed.model, observed.handles[place]);
            };
        };
        std::vector<std::size_t> order(count);
        std::iota(order.begin(), order.end(), 0);
        const std::vector<std::size_t> reversed(order.rbegin(), order.rend());
        auto shuffled = order;
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937()); // NOLINT: always the same

        const auto withOne = [&] {
            auto observed = with();
            for (std::size_t place = 1; place < count; ++place)
                Way::remove(*observed->model, observed->handles[place]);
            return observed;
        };

        std::printf("%-12s %7zu %8.1f %8.1f %9.1f %9.1f %9.1f %9.1f %9.1f\n", name, count,
            nanosecondsEach(count, without, [](Observed<Way>& observed) { observed.addAll(); }),
            nanosecondsEach(
                count, with, [](Observed<Way>& observed) { observed.model->setValue(1); }),
            nanosecondsEach(count, with, removing(order)),
            nanosecondsEach(count, with, removing(reversed)),
            nanosecondsEach(count, with, removing(shuffled)),
            nanosecondsEach(count, with, [](Observed<Way>& observed) { observed.model.reset(); }),
            static_cast<double>(count)
                * nanosecondsEach(
                    count, withOne, [](Observed<Way>& observed) { observed.model->setValue(1); }));
        std::fflush(stdout);
    }
}

inline std::size_t bytesInUse() {
    const struct mallinfo2 info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Prints the bytes that an observation takes, the handle included that the observer keeps: of many
/// of one object, and of one of each of many objects.
template <class Way>
void printMemory(const char* name) {
    constexpr std::size_t count = 100'000;
    const auto bytesEach = [](std::size_t before) {
        return static_cast<double>(bytesInUse() - before) / static_cast<double>(count)
            + static_cast<double>(sizeof(typename Way::Handle));
    };
    double ofOne = 0;
    {
        Observed<Way> observed(count);
        const std::size_t before = bytesInUse();
        observed.addAll();
        ofOne = bytesEach(before);
    }
    std::int64_t counter = 0;
    std::vector<typename Way::Handle> handles;
    handles.reserve(count);
    std::vector<std::unique_ptr<typename Way::Model>> models(count);
    std::generate(models.begin(), models.end(), std::make_unique<typename Way::Model>);
    const std::size_t before = bytesInUse();
    for (const auto& model : models)
        handles.push_back(Way::add(*model, counter));
    std::printf("%-12s %12.0f %12.0f\n", name, ofOne, bytesEach(before));
    models.clear();
}

struct Peer {
    std::string name;
    void (*printGrowth)(const char* name);
    void (*printMemory)(const char* name);
};

/// Those that are registered.
inline std::vector<Peer>& peers() {
    static std::vector<Peer> all;
    return all;
}

template <class Way>
void registerNotify(const std::string& name) {
    benchmark::RegisterBenchmark(("notify/" + name).c_str(), notify<Way>)
        ->Arg(0)
        ->Arg(1)
        ->Arg(10)
        ->Arg(100);
}

/// Registers all that is measured of a way. True, so that a constant can call it.
template <class Way>
bool registerPeer(const std::string& name) {
    registerNotify<Way>(name);
    benchmark::RegisterBenchmark(("addAndRemove/" + name).c_str(), addAndRemove<Way>)
        ->Arg(0)
        ->Arg(10)
        ->Arg(1'000)
        ->Arg(100'000);
    peers().push_back({name, printGrowth<Way>, printMemory<Way>});
    return true;
}

} // namespace kw::bench
