// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/ScalingPeers.h>

#include <KWToolkit/imaging/KWScaledImage.h>

#include <QImage>

#include <memory>
#include <stdexcept>
#include <utility>

namespace kw::bench {

Scaling scalingByToolkit(const Picture& picture, Size size) {
    const CGImageRef image = picture.image();
    const auto scaled = std::make_shared<CGImageRef>();
    return {[=] {
                *scaled = kwCreateScaledCGImageFromCGImage(image, size.width, size.height, false,
                    true, false, 1.0, NSImageInterpolationHigh);
                if (!*scaled)
                    throw std::runtime_error("not scaled");
                return 0.0;
            },
        [=, isOpaque = picture.isOpaque] {
            Bytes pixels((*scaled)->row(0), (*scaled)->row(size.height));
            for (std::size_t i = 0; isOpaque && i < pixels.size(); i += 4)
                std::swap(pixels[i], pixels[i + 2]);
            return pixels;
        }};
}

Scaling scalingByQt(const Picture& picture, Size size) {
    const QImage image(picture.pixels.data(), picture.size.width, picture.size.height,
        picture.stride(),
        picture.isOpaque ? QImage::Format_RGB32 : QImage::Format_RGBA8888_Premultiplied);
    const auto scaled = std::make_shared<QImage>();
    return {[=] {
                *scaled = image.scaled(
                    size.width, size.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
                return 0.0;
            },
        [=, format = image.format()] {
            const QImage result = scaled->convertToFormat(format);
            return Bytes(result.constBits(), result.constBits() + result.sizeInBytes());
        }};
}

std::span<const ScalingPeer> scalingPeers() {
    static constexpr ScalingPeer peers[] = {
        {"toolkit", scalingByToolkit},
        {"Qt smooth", scalingByQt},
        {"zimg planar", scalingByZimg},
        {"zimg interleaved", scalingByZimgInterleaved},
        {"vips lanczos3", scalingByVipsDefault},
        {"vips lanczos3, gap 0", scalingByVipsWhole},
        {"OpenCV area", scalingByOpenCVArea},
        {"OpenCV lanczos4", scalingByOpenCVLanczos},
        {"swscale lanczos", scalingBySwscale},
        {"libyuv box", scalingByLibyuv},
        {"stb default", scalingByStb},
        {"Pillow lanczos", scalingByPillow, true},
    };
    return peers;
}

} // namespace kw::bench
