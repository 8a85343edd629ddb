// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Messages beside the calls a host would otherwise make, and what a press costs inside the process.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>
#include <bench/RatioReporter.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <string>

namespace {

using namespace kw;

class Counter : public NSObject {
public:
    static Class& classObject() {
        static Class object("Counter", NSObject::classObject(),
            {method("tick", &Counter::tick), method("add:", &Counter::add)});
        return object;
    }
    Class& isa() const override { return classObject(); }

    virtual void tick();
    virtual int add(int amount);

    int count = 0;
};

// Out of line, so that a call is a call whichever way it is made.
[[gnu::noinline]] void Counter::tick() { benchmark::DoNotOptimize(++count); }
[[gnu::noinline]] int Counter::add(int amount) { return count += amount; }

/// The object behind a pointer that the compiler knows nothing about.
Counter& unknown(Counter& counter) {
    Counter* pointer = &counter;
    benchmark::DoNotOptimize(pointer);
    return *pointer;
}

void callVirtual(benchmark::State& state) {
    Counter counter;
    for (auto _ : state)
        unknown(counter).tick();
}

void callFunction(benchmark::State& state) {
    Counter counter;
    std::function<void(Counter&)> function = &Counter::tick;
    for (auto _ : state) {
        benchmark::DoNotOptimize(function);
        function(unknown(counter));
    }
}

void callFunctionWithResult(benchmark::State& state) {
    Counter counter;
    std::function<int(Counter&, int)> function = &Counter::add;
    for (auto _ : state) {
        benchmark::DoNotOptimize(function);
        benchmark::DoNotOptimize(function(unknown(counter), 1));
    }
}

void callSend(benchmark::State& state) {
    Counter counter;
    const SEL tick("tick");
    for (auto _ : state)
        send(unknown(counter), tick);
}

void callSendWithResult(benchmark::State& state) {
    Counter counter;
    const SEL add("add:");
    for (auto _ : state)
        benchmark::DoNotOptimize(send<int>(unknown(counter), add, 1));
}

void callPerformSelector(benchmark::State& state) {
    Counter counter;
    const SEL tick("tick");
    for (auto _ : state)
        unknown(counter).performSelector(tick);
}

/// A press as the handler sees it, among so many registrations.
void handlePress(benchmark::State& state) {
    HeadlessHotkeyService service;
    const ServiceScope scope(service);
    auto& manager = KWGlobalHotkeyManager::hotkeyManager();
    Counter counter;
    const auto registrations = static_cast<std::uint32_t>(state.range(0));
    for (std::uint32_t keyCode = 0; keyCode < registrations; ++keyCode)
        manager.registerHotkey(keyCode, SEL("tick"), counter, false, false, false, false);
    const ApplicationEvent event {
        {kEventClassKeyboard, kEventHotKeyPressed}, EventHotKeyID {0, registrations / 2}};
    for (auto _ : state)
        KWHotKeyHandler(nullptr, &event, nullptr);
    for (std::uint32_t keyCode = 0; keyCode < registrations; ++keyCode)
        manager.unregisterHotkey(keyCode, false, false, false, false);
}

void renderRecord(benchmark::State& state) {
    HeadlessKeyboardLayout layout({{45, {u'k', u'K'}}});
    const ServiceScope scope(layout);
    HotkeyRecord record;
    fillHotkeyRecord(record, true, true, true, true, 45, u'k');
    for (auto _ : state)
        benchmark::DoNotOptimize(renderHotkeyRecord(record));
}

BENCHMARK(callVirtual);
BENCHMARK(callFunction);
BENCHMARK(callSend);
BENCHMARK(callPerformSelector);
BENCHMARK(callFunctionWithResult);
BENCHMARK(callSendWithResult);
BENCHMARK(handlePress)->Arg(1)->Arg(100)->Arg(10'000);
BENCHMARK(renderRecord);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    reporter.printRatio("callSend", "callFunction");
    reporter.printRatio("callSend", "callVirtual");
    reporter.printRatio("callPerformSelector", "callFunction");
    reporter.printRatio("callSendWithResult", "callFunctionWithResult");
    reporter.printRatio("handlePress/100", "handlePress/1");
    reporter.printRatio("handlePress/10000", "handlePress/1");
}
