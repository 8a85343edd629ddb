// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/Reference.h>
#include <bench/imaging/ScalingPeers.h>

#include <QImage>
#include <QString>

namespace kw::bench {

namespace {

bool write(const std::string& folder, const std::string& name, Size size, const Bytes& pixels) {
    const QImage image(pixels.data(), size.width, size.height, QImage::Format_RGB32);
    return image.save(
        QString::fromStdString(folder + "/" + name + "-" + std::to_string(size.width) + ".png"));
}

} // namespace

bool writeZonePlates(const std::string& folder) {
    const Picture picture = zonePlate(2000);
    bool isWritten = write(folder, "original", picture.size, picture.pixels);
    for (const int side : {256, 100}) {
        const Size size {side, side};
        isWritten &= write(folder, "reference", size, rounded(referenceScaled(picture, size)));
        for (const auto& [name, prepare] : {std::pair {"toolkit", &scalingByToolkit},
                 std::pair {"qt", &scalingByQt}, std::pair {"zimg", &scalingByZimg}}) {
            const Scaling scaling = prepare(picture, size);
            scaling.run();
            isWritten &= write(folder, name, size, scaling.result());
        }
    }
    return isWritten;
}

} // namespace kw::bench
