// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/ScalingPeers.h>

#include <vips/vips.h>

#include <memory>
#include <stdexcept>

namespace kw::bench {

namespace {

struct Unref {
    void operator()(VipsImage* image) const { g_object_unref(image); }
    void operator()(std::uint8_t* memory) const { g_free(memory); }
};
using Image = std::unique_ptr<VipsImage, Unref>;

Scaling scalingByVips(const Picture& picture, Size size, double gap) {
    if (VIPS_INIT("imaging_bench"))
        throw std::runtime_error(vips_error_buffer());
    vips_concurrency_set(1);
    vips_cache_set_max(0); // each run does it all again

    const auto pixels = std::make_shared<std::unique_ptr<std::uint8_t, Unref>>();
    return {[&picture, size, gap, pixels] {
                const Image image(
                    vips_image_new_from_memory(picture.pixels.data(), picture.pixels.size(),
                        picture.size.width, picture.size.height, 4, VIPS_FORMAT_UCHAR));
                VipsImage* resized = nullptr;
                const bool isResized = image
                    && !vips_resize(image.get(), &resized,
                        static_cast<double>(size.width) / picture.size.width, "vscale",
                        static_cast<double>(size.height) / picture.size.height, "kernel",
                        VIPS_KERNEL_LANCZOS3, "gap", gap, nullptr);
                const Image result(resized);
                std::size_t byteCount = 0;
                if (isResized)
                    pixels->reset(static_cast<std::uint8_t*>(
                        vips_image_write_to_memory(result.get(), &byteCount)));
                if (byteCount != size.byteCount())
                    throw std::runtime_error(vips_error_buffer());
                return 0.0;
            },
        [=] { return Bytes(pixels->get(), pixels->get() + size.byteCount()); }};
}

} // namespace

Scaling scalingByVipsDefault(const Picture& picture, Size size) {
    return scalingByVips(picture, size, 2); // its default
}

Scaling scalingByVipsWhole(const Picture& picture, Size size) {
    return scalingByVips(picture, size, 0);
}

} // namespace kw::bench
