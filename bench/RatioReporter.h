// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kw::bench {

/// Prints as usual and keeps the times: the median where a benchmark is repeated, else the one.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred)
                continue;
            const std::string name = run.run_name.str();
            if (run.run_type == Run::RT_Iteration || run.aggregate_name == "median")
                m_times[name] =
                    name.find("real_time") == name.npos && name.find("manual_time") == name.npos
                    ? run.GetAdjustedCPUTime()
                    : run.GetAdjustedRealTime();
        }
    }

    /// Prints how many times as long the one takes as the other, where both were run.
    void printRatio(const std::string& one, const std::string& other) const {
        const auto oneTime = time(one);
        const auto otherTime = time(other);
        if (oneTime && otherTime)
            std::printf("%-42s / %-36s %6.2f\n", one.c_str(), other.c_str(), *oneTime / *otherTime);
    }

    /// The time of a benchmark that was run, in its own unit, whichever clock it is measured with.
    std::optional<double> time(const std::string& name) const {
        for (const char* const clock : {"", "/process_time", "/manual_time"}) {
            if (const auto place = m_times.find(name + clock); place != m_times.end())
                return place->second;
        }
        return std::nullopt;
    }

    /// Prints the times of those of the benchmarks that were run, and how many times as long as the
    /// first each takes.
    void printTable(const char* title, const std::vector<std::string>& names) const {
        const auto first = time(names.front());
        if (first)
            std::printf("\n%s\n", title);
        for (const std::string& name : names) {
            if (const auto own = time(name); own && first)
                std::printf("%-42s %9.3f %9.2f\n", name.c_str(), *own, *own / *first);
        }
    }

private:
    std::map<std::string, double> m_times;
};

/// Reads the command line's flags, which go before these: what is compared is measured in turns, so
/// many times. False for a flag that is none.
inline bool initializeInTurns(int argc, char** argv, int repetitions, const char* minimumTime) {
    std::string defaults[] {"--benchmark_repetitions=" + std::to_string(repetitions),
        std::string("--benchmark_min_time=") + minimumTime,
        "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true"};
    std::vector<char*> arguments(argv, argv + argc);
    for (std::string& argument : defaults)
        arguments.insert(arguments.begin() + 1, argument.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    return !benchmark::ReportUnrecognizedArguments(count, arguments.data());
}

} // namespace kw::bench
