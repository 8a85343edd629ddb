// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A reflection beside the same made with Qt's painter.
#include <KWToolkit/imaging/NSImage+Reflection.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/Pictures.h>

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kw::bench {

namespace {

constexpr Size sizes[] = {{1920, 1080}, {6000, 4000}};

const Picture& pictureOf(Size size) {
    static const Picture screen {sizes[0], false, photo(sizes[0]).pixels};
    static const Picture large {sizes[1], false, largePhoto().pixels};
    return size.width == large.size.width ? large : screen;
}

void reflectByToolkit(benchmark::State& state, Size size) {
    const Picture& picture = pictureOf(size);
    NSImage image;
    image.addRepresentation(NSBitmapImageRep::initWithCGImage(picture.image()));
    for (auto _ : state)
        benchmark::DoNotOptimize(reflectedImageWithAmountReflected(image, 0.5F));
}

void reflectByQt(benchmark::State& state, Size size) {
    const Picture& picture = pictureOf(size);
    const QImage image(
        picture.pixels.data(), size.width, size.height, QImage::Format_ARGB32_Premultiplied);
    const QRect band(0, 0, size.width, size.height / 2);
    QLinearGradient gradient(band.topLeft(), QPointF(0, band.height()));
    for (const auto& [location, alpha] :
        {std::pair {0.0, 0.0}, std::pair {0.5, 0.2}, std::pair {1.0, 0.5}})
        gradient.setColorAt(location, QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)));
    for (auto _ : state) {
        QImage reflection(image.size(), QImage::Format_ARGB32_Premultiplied);
        reflection.fill(Qt::transparent);
        QPainter painter(&reflection);
        painter.fillRect(band, gradient);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        // Faster than to draw what QImage::mirrored makes.
        painter.scale(1, -1);
        painter.drawImage(QPoint(0, -band.height()), image,
            QRect(0, size.height - band.height(), size.width, band.height()));
        painter.end();
        benchmark::DoNotOptimize(reflection);
    }
}

std::string nameOf(Size size, const char* peer) {
    return "reflection_" + std::to_string(size.width) + "x" + std::to_string(size.height) + "/"
        + peer;
}

} // namespace

Summary registerReflection() {
    for (const Size size : sizes) {
        for (const auto& [peer, reflect] :
            {std::pair {"toolkit", &reflectByToolkit}, std::pair {"Qt painter", &reflectByQt}}) {
            benchmark::RegisterBenchmark(nameOf(size, peer).c_str(),
                [size, reflect](benchmark::State& state) { reflect(state, size); })
                ->Unit(benchmark::kMillisecond)
                ->MeasureProcessCPUTime();
        }
    }
    return [](const RatioReporter& reporter) {
        for (const Size size : sizes)
            reporter.printTable(
                "Reflection", {nameOf(size, "toolkit"), nameOf(size, "Qt painter")});
    };
}

} // namespace kw::bench
