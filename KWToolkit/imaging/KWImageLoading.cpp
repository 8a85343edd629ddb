// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/KWImageLoading.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

CGImageRef CreateCGImageFromData(std::string_view data) {
    return Platform::imageDecoder().imageFromData(data).image;
}

CGImageRef CreateCGImageFromFile(const std::string& path) {
    return Platform::imageDecoder().imageFromFile(path).image;
}

} // namespace kw
