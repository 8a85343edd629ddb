// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The peers that write into a buffer of the caller's.
#include <bench/imaging/ScalingPeers.h>

#include <libyuv.h>
#include <opencv2/imgproc.hpp>
#include <stb/stb_image_resize.h>

extern "C" {
#include <libswscale/swscale.h>
}

#include <memory>
#include <stdexcept>

namespace kw::bench {

namespace {

template <class Fill>
Scaling intoBuffer(const Picture& picture, Size size, Fill fill) {
    // Not touched before, so that its memory counts as the run's like that of the others.
    const auto pixels = std::make_shared_for_overwrite<std::uint8_t[]>(size.byteCount());
    return {[&picture, size, pixels, fill] {
                if (!fill(picture, size, pixels.get()))
                    throw std::runtime_error("not scaled");
                return 0.0;
            },
        [size, pixels] { return Bytes(pixels.get(), pixels.get() + size.byteCount()); }};
}

Scaling scalingByOpenCV(const Picture& picture, Size size, int interpolation) {
    cv::setNumThreads(1);
    return intoBuffer(picture, size, [=](const Picture& from, Size toSize, std::uint8_t* pixels) {
        // OpenCV has no view of pixels that never change.
        const cv::Mat source(from.size.height, from.size.width, CV_8UC4,
            const_cast<std::uint8_t*>(from.pixels.data()));
        cv::Mat result(toSize.height, toSize.width, CV_8UC4, pixels);
        cv::resize(source, result, result.size(), 0, 0, interpolation);
        return result.data == pixels;
    });
}

} // namespace

Scaling scalingByOpenCVArea(const Picture& picture, Size size) {
    return scalingByOpenCV(picture, size, cv::INTER_AREA);
}

Scaling scalingByOpenCVLanczos(const Picture& picture, Size size) {
    return scalingByOpenCV(picture, size, cv::INTER_LANCZOS4);
}

Scaling scalingBySwscale(const Picture& picture, Size size) {
    const AVPixelFormat format = picture.isOpaque ? AV_PIX_FMT_BGR0 : AV_PIX_FMT_RGBA;
    const double parameters[2] = {3, 0};
    const std::shared_ptr<SwsContext> context(
        sws_getContext(picture.size.width, picture.size.height, format, size.width, size.height,
            format, SWS_LANCZOS | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP,
            nullptr, nullptr, parameters),
        sws_freeContext);
    if (!context)
        throw std::runtime_error("swscale cannot");
    return intoBuffer(
        picture, size, [context](const Picture& from, Size toSize, std::uint8_t* pixels) {
            const std::uint8_t* const source[4] = {from.pixels.data()};
            const int sourceStride[4] = {from.stride()};
            std::uint8_t* const result[4] = {pixels};
            const int resultStride[4] = {4 * toSize.width};
            return sws_scale(context.get(), source, sourceStride, 0, from.size.height, result,
                       resultStride)
                == toSize.height;
        });
}

Scaling scalingByLibyuv(const Picture& picture, Size size) {
    return intoBuffer(picture, size, [](const Picture& from, Size toSize, std::uint8_t* pixels) {
        return libyuv::ARGBScale(from.pixels.data(), from.stride(), from.size.width,
                   from.size.height, pixels, 4 * toSize.width, toSize.width, toSize.height,
                   libyuv::kFilterBox)
            == 0;
    });
}

Scaling scalingByStb(const Picture& picture, Size size) {
    return intoBuffer(picture, size, [](const Picture& from, Size toSize, std::uint8_t* pixels) {
        return stbir_resize_uint8(from.pixels.data(), from.size.width, from.size.height,
                   from.stride(), pixels, toSize.width, toSize.height, 4 * toSize.width, 4)
            == 1;
    });
}

} // namespace kw::bench
