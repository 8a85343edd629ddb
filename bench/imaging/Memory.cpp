// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/ScalingPeers.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace kw::bench {

namespace {

/// A line of the process's status, in KiB.
long statusOf(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":"))
            return std::stol(line.substr(name.size() + 1));
    }
    return 0;
}

void printPeak(const ScalingPeer& peer, const Picture& picture, Size size) {
    const Scaling scaling = peer.prepare(picture, size);
    std::ofstream("/proc/self/clear_refs") << 5; // the peak is counted anew
    const long before = statusOf("VmRSS");
    scaling.run();
    const long canvas = static_cast<long>(size.byteCount() / 1024);
    std::printf("%-24s %8.1f MiB\n", peer.name,
        static_cast<double>(statusOf("VmHWM") - before - canvas) / 1024);
    std::fflush(stdout);
}

} // namespace

void printPeakMemory() {
    const Picture& picture = largePhoto();
    for (const Size size : {Size {256, 171}, Size {1024, 683}}) {
        std::printf(
            "\n6000x4000 to %dx%d, besides the picture and the result\n", size.width, size.height);
        std::fflush(stdout);
        for (const ScalingPeer& peer : scalingPeers()) {
            if (peer.timesItself)
                continue;
            // A process each, so that none finds what another has left.
            if (const pid_t child = ::fork(); child == 0) {
                printPeak(peer, picture, size);
                ::_exit(0);
            } else if (child > 0) {
                ::waitpid(child, nullptr, 0);
            }
        }
    }
}

} // namespace kw::bench
