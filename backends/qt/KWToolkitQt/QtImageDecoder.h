// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ImageDecoder.h>

namespace kw::qt {

/// Reads PNG, JPEG, GIF, WebP, BMP, TIFF and SVG, told by their content, with those of Qt's image
/// plugins that are installed. Needs no application object, but for SVG a QGuiApplication, without
/// which there is none; of it UTF-8 and
/// Latin-1, with dashed lines drawn whole. A picture may be as large as
/// `QImageReader::allocationLimit` allows.
class QtImageDecoder final : public ImageDecoder {
public:
    DecodedImage imageFromData(std::string_view data) override;
    DecodedImage imageFromFile(const std::string& path) override;
    DecodedImage reducedImageFromFile(
        const std::string& path, const WantedSize& wantedSize) override;
};

} // namespace kw::qt
