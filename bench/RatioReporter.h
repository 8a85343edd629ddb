// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
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
                m_times[name] = name.find("real_time") == name.npos ? run.GetAdjustedCPUTime()
                                                                    : run.GetAdjustedRealTime();
        }
    }

    /// Prints how many times as long the one takes as the other, where both were run.
    void printRatio(const std::string& one, const std::string& other) const {
        if (m_times.contains(one) && m_times.contains(other))
            std::printf("%-42s / %-36s %6.2f\n", one.c_str(), other.c_str(),
                m_times.at(one) / m_times.at(other));
    }

private:
    std::map<std::string, double> m_times;
};

} // namespace kw::bench
