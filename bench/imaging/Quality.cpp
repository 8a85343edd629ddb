// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/Reference.h>
#include <bench/imaging/ScalingPeers.h>

#include <cstdio>

namespace kw::bench {

void printQuality() {
    const struct {
        const char* name;
        Picture picture;
    } rows[] = {
        {"photo", photo({1500, 1100})},
        {"zone plate", zonePlate(2000)},
        {"noise", noise({640, 480})},
        {"icon", icon(512)},
    };
    // Also such as are not in proportion: there one direction does not make up for the other.
    constexpr Size sizes[] = {
        {256, 188}, {100, 73}, {31, 23}, {700, 500}, {1300, 60}, {60, 1000}, {2500, 2200}};
    std::printf("%-36s %10s %10s %10s\n", "dB", "toolkit", "zimg", "rounded");
    for (const auto& [name, picture] : rows) {
        for (const Size size : sizes) {
            const auto reference = referenceScaled(picture, size);
            const auto decibels = [&](const Bytes& pixels) {
                return peakSignalToNoise(reference, pixels, picture.channels());
            };
            const auto decibelsOf = [&](const Scaling& scaling) {
                scaling.run();
                return decibels(scaling.result());
            };
            std::printf("%-12s %5dx%-5d to %5dx%-5d %9.1f %10.1f %10.1f\n", name,
                picture.size.width, picture.size.height, size.width, size.height,
                decibelsOf(scalingByToolkit(picture, size)),
                decibelsOf(scalingByZimg(picture, size)), decibels(rounded(reference)));
        }
    }
}

} // namespace kw::bench
