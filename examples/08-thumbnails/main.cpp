// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The pictures of a folder on one sheet.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkitQt/QtImages.h>
#include <KWToolkitQt/QtServices.h>

#include <QFile>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSaveFile>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* usage = "usage: 08-thumbnails FOLDER SHEET.png [SIZE]\n"
                              "Writes the pictures of a folder, each within SIZE (16 to 1024, else "
                              "160) pixels, to one sheet.\n";

constexpr int defaultSize = 160;
constexpr int columns = 6;
constexpr int margin = 12;
constexpr int captionHeight = 20;

struct Thumbnail {
    std::string name;
    QImage image;
};

int complain(const std::string& what, const std::string& why) {
    std::cerr << "08-thumbnails: " << what << ": " << why << '\n';
    return 1;
}

/// The files of a folder by their names, without the sheet that an earlier run wrote there.
std::vector<fs::path> filesIn(
    const fs::path& folder, const fs::path& sheet, std::error_code& error) {
    std::vector<fs::path> files;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
        entry.increment(error)) {
        std::error_code ignored;
        if (!entry->is_directory(ignored) && !fs::equivalent(entry->path(), sheet, ignored))
            files.push_back(entry->path());
    }
    std::ranges::sort(files);
    return files;
}

std::vector<Thumbnail> readThumbnails(const std::vector<fs::path>& files, int size) {
    std::vector<Thumbnail> thumbnails;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string name = files[i].filename();
        std::cout << i + 1 << '/' << files.size() << ' ' << name << ' ' << std::flush;
        const double begin = kw::Platform::clock().now();
        const auto thumb = kw::thumbFromFile(files[i], {double(size), double(size)});
        if (!thumb) {
            std::error_code error;
            std::cout << "skipped: "
                      << (fs::is_regular_file(files[i], error) ? "not a picture that can be read"
                                                               : "not a file")
                      << '\n';
            continue;
        }
        const auto milliseconds = std::llround((kw::Platform::clock().now() - begin) * 1000);
        std::cout << milliseconds << " ms\n";
        thumbnails.push_back({name, kw::qt::toQImage(thumb->CGImage())});
    }
    return thumbnails;
}

QImage drawSheet(const std::vector<Thumbnail>& thumbnails, int size) {
    const int count = static_cast<int>(thumbnails.size());
    const int rows = (count + columns - 1) / columns;
    QImage sheet(margin + std::min(count, columns) * (size + margin),
        margin + rows * (size + captionHeight + margin), QImage::Format_RGB32);
    if (sheet.isNull())
        return sheet;
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int i = 0; i < count; ++i) {
        const auto& [name, image] = thumbnails[static_cast<std::size_t>(i)];
        const QRect box(margin + i % columns * (size + margin),
            margin + i / columns * (size + captionHeight + margin), size, size);
        QRect place({}, image.size());
        place.moveCenter(box.center());
        painter.drawImage(place.topLeft(), image);
        const QString caption = painter.fontMetrics().elidedText(
            QFile::decodeName(name.c_str()), Qt::ElideMiddle, size);
        painter.drawText(
            QRect(box.left(), box.bottom() + 1, size, captionHeight), Qt::AlignCenter, caption);
    }
    return sheet;
}

} // namespace

int main(int argc, char** argv) {
    int size = defaultSize;
    const std::string_view sizeText = argc == 4 ? argv[3] : "160";
    const auto [end, sizeError] =
        std::from_chars(sizeText.data(), sizeText.data() + sizeText.size(), size);
    if (argc < 3 || argc > 4 || sizeError != std::errc {} || *end != '\0' || size < 16
        || size > 1024) {
        std::cerr << usage;
        return 2;
    }
    // No window is shown, so none has to be possible.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    kw::qt::useQtServices();

    std::error_code error;
    // A device or folder of that name would be replaced as well.
    if (fs::exists(argv[2], error) && !fs::is_regular_file(argv[2], error))
        return complain(argv[2], "not a file");
    const std::vector<fs::path> files = filesIn(argv[1], argv[2], error);
    if (error)
        return complain(argv[1], error.message());
    const std::vector<Thumbnail> thumbnails = readThumbnails(files, size);
    if (thumbnails.empty())
        return complain(argv[1], "no pictures in it");
    const QImage sheet = drawSheet(thumbnails, size);
    if (sheet.isNull())
        return complain(argv[2], "too many pictures for one sheet");
    // What an earlier run wrote stays until the new one is whole.
    QSaveFile file(QFile::decodeName(argv[2]));
    if (!file.open(QIODevice::WriteOnly) || !sheet.save(&file, "PNG") || !file.commit())
        return complain(argv[2], file.errorString().toStdString());
    std::cout << thumbnails.size() << " pictures on " << argv[2] << '\n';
    return 0;
}
