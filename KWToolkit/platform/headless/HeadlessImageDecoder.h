// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ImageDecoder.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace kw {

/// "Decodes" what it was told: each path and each data is the picture it stands for here.
class HeadlessImageDecoder final : public ImageDecoder {
public:
    std::map<std::string, DecodedImage, std::less<>> pictures;
    /// What was asked of the last reduced picture.
    PixelSize lastWantedSize;

    DecodedImage imageFromData(std::string_view data) override { return find(data); }
    DecodedImage imageFromFile(const std::string& path) override { return find(path); }
    DecodedImage reducedImageFromFile(
        const std::string& path, const WantedSize& wantedSize) override {
        const DecodedImage picture = find(path);
        if (picture.image)
            lastWantedSize =
                wantedSize({picture.image->width(), picture.image->height()}, picture.orientation);
        return picture;
    }

private:
    DecodedImage find(std::string_view name) const {
        const auto found = pictures.find(name);
        return found == pictures.end() ? DecodedImage {} : found->second;
    }
};

} // namespace kw
