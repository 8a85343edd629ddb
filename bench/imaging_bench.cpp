// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Scaling, gamma, reflections and files beside the usual libraries, on one thread. Besides:
//   imaging_bench --zone-plate FOLDER    writes pictures to look at
//   imaging_bench --quality              closeness to the formula for pictures that are hard
//   imaging_bench --memory               the most memory that reducing a large picture takes
#include <KWToolkitQt/QtServices.h>
#include <bench/imaging/Benchmarks.h>

#include <QThreadPool>

#include <string_view>

int main(int argc, char** argv) {
    using namespace kw::bench;
    const std::string_view option = argc > 1 ? argv[1] : "";
    if (option == "--zone-plate" && argc == 3)
        return writeZonePlates(argv[2]) ? 0 : 1;
    if (option == "--quality") {
        printQuality();
        return 0;
    }
    if (option == "--memory") {
        printPeakMemory();
        return 0;
    }
    if (!initializeInTurns(argc, argv, 7, "0.05"))
        return 1;
    kw::qt::useQtServices(); // whose decoder reads the file
    // Qt scales in its pool. What is compared is the process's time on the processor.
    QThreadPool::globalInstance()->setMaxThreadCount(1);

    const Summary summaries[] = {
        registerScaling(), registerGamma(), registerReflection(), registerFile()};
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const auto& summary : summaries)
        summary(reporter);
}
