// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kw {

struct PixelSize {
    std::int64_t width = 0;
    std::int64_t height = 0;
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// How a stored picture is to be turned for showing it: the values of the orientation tag of TIFF
/// 6.0 and Exif 2.3, from 1 (as it is) to 8.
using ImageOrientation = int;

/// Whether width and height change places.
constexpr bool isTransposed(ImageOrientation orientation) { return orientation >= 5; }

struct DecodedImage {
    CGImageRef image; ///< null where nothing could be read
    ImageOrientation orientation = 1;
};

/// Reads encoded pictures: the first frame or page, in the file's own depth. What is not a picture,
/// is cut off or wants more memory than the decoder grants gives null. Used on any thread.
class KW_EXPORT ImageDecoder {
public:
    virtual ~ImageDecoder();

    /// The pixels as they are stored; an orientation is told, not applied.
    virtual DecodedImage imageFromData(std::string_view data) = 0;
    virtual DecodedImage imageFromFile(const std::string& path) = 0;

    /// The least size that is wanted of a picture, of which the stored size and orientation are
    /// known by then.
    using WantedSize = std::function<PixelSize(PixelSize stored, ImageOrientation orientation)>;
    /// The same, made smaller while it is decoded where that saves time, to no less than wanted in
    /// either dimension. Asks for the wanted size once, before an image is returned.
    virtual DecodedImage reducedImageFromFile(
        const std::string& path, const WantedSize& wantedSize) = 0;
};

/// Where nothing can be decoded.
class KW_EXPORT UnavailableImageDecoder final : public ImageDecoder {
public:
    DecodedImage imageFromData(std::string_view) override { return {}; }
    DecodedImage imageFromFile(const std::string&) override { return {}; }
    DecodedImage reducedImageFromFile(const std::string&, const WantedSize&) override { return {}; }
};

} // namespace kw
