// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever bytes a picture has: it is read or not, and what is read can be shown. The first byte
// chooses the size that is wanted.
#include <KWToolkit/platform/Platform.h>
#include <KWToolkitQt/QtImages.h>
#include <fuzz/Require.h>

#include <QGuiApplication>
#include <QImageReader>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static const QGuiApplication application(*argc, *argv);
    QImageReader::setAllocationLimit(4); // megabytes: large pictures are only slow
    QLoggingCategory::setFilterRules("*=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kw::fuzz::require;
    if (size == 0)
        return 0;
    const int side = data[0];
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    kw::ImageDecoder& decoder = kw::Platform::imageDecoder();
    const kw::DecodedImage whole = decoder.imageFromData(bytes);
    if (!whole.image)
        return 0;
    require(whole.orientation >= 1 && whole.orientation <= 8);
    require(!kw::qt::toQImage(whole.image).isNull());
    if (side == 0)
        return 0;

    static const QTemporaryDir folder;
    const std::string path = folder.filePath("picture").toStdString();
    std::ofstream(path, std::ios::binary) << bytes;
    kw::PixelSize stored;
    const kw::DecodedImage reduced =
        decoder.reducedImageFromFile(path, [&](kw::PixelSize size, kw::ImageOrientation) {
            stored = size;
            return kw::PixelSize {side, side};
        });
    require(reduced.image && reduced.orientation == whole.orientation);
    require(stored == kw::PixelSize {whole.image->width(), whole.image->height()});
    require(reduced.image->width() >= std::min<std::int64_t>(side, stored.width));
    require(reduced.image->height() >= std::min<std::int64_t>(side, stored.height));
    return 0;
}
