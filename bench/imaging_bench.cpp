// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Scaling, gamma, reflections and files beside the usual libraries, on one thread.
#include <bench/imaging/Benchmarks.h>

#include <QThreadPool>

int main(int argc, char** argv) {
    if (!kw::bench::initializeInTurns(argc, argv, 7, "0.05"))
        return 1;
    // Qt scales in its pool. What is compared is the process's time on the processor.
    QThreadPool::globalInstance()->setMaxThreadCount(1);

    const kw::bench::Summary summaries[] = {kw::bench::registerScaling()};
    kw::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const auto& summary : summaries)
        summary(reporter);
}
