// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A thumbnail of a JPEG file of 24 megapixels.
#include <KWToolkit/imaging/KWFileThumbnail.h>
#include <bench/imaging/Benchmarks.h>
#include <bench/imaging/Pictures.h>
#include <tests/support/TemporaryFolder.h>

#include <QImage>
#include <QImageReader>
#include <QString>
#include <benchmark/benchmark.h>
#include <vips/vips.h>

#include <string>

namespace kw::bench {

namespace {

const std::string& file() {
    static const test::TemporaryFolder folder;
    static const std::string path = [] {
        const Picture& picture = largePhoto();
        const QImage image(
            picture.pixels.data(), picture.size.width, picture.size.height, QImage::Format_RGB32);
        image.save(QString::fromStdString(folder.path("photo.jpg")), nullptr, 85);
        return folder.path("photo.jpg");
    }();
    return path;
}

bool thumbByToolkit(const std::string& path) {
    const auto thumb = thumbFromFile(path, {256, 256});
    return thumb && thumb->pixelsWide() == 256;
}

bool thumbByVips(const std::string& path) {
    VipsImage* thumb = nullptr;
    if (vips_thumbnail(path.c_str(), &thumb, 256, "height", 256, nullptr))
        return false;
    std::size_t byteCount = 0;
    void* const pixels = vips_image_write_to_memory(thumb, &byteCount);
    const bool isMade = pixels && vips_image_get_width(thumb) == 256;
    g_free(pixels);
    g_object_unref(thumb);
    return isMade;
}

bool thumbByQt(const std::string& path) {
    QImageReader reader(QString::fromStdString(path));
    reader.setScaledSize(reader.size().scaled(256, 256, Qt::KeepAspectRatio));
    return reader.read().width() == 256;
}

constexpr std::pair<const char*, bool (*)(const std::string&)> thumbnailers[] = {
    {"jpeg_file/toolkit", thumbByToolkit},
    {"jpeg_file/vips_thumbnail", thumbByVips},
    {"jpeg_file/QImageReader", thumbByQt},
};

} // namespace

Summary registerFile() {
    for (const auto& [name, thumbnail] : thumbnailers) {
        benchmark::RegisterBenchmark(name,
            [thumbnail](benchmark::State& state) {
                if (VIPS_INIT("imaging_bench") == 0)
                    vips_cache_set_max(0); // a thumbnail is made each time
                const std::string& path = file();
                for (auto _ : state) {
                    if (!thumbnail(path)) {
                        state.SkipWithError("no thumbnail");
                        break;
                    }
                }
            })
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime();
    }
    return [](const RatioReporter& reporter) {
        std::vector<std::string> names;
        for (const auto& row : thumbnailers)
            names.emplace_back(row.first);
        reporter.printTable("A 24-megapixel JPEG file to 256x171", names);
    };
}

} // namespace kw::bench
