// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What the imaging benchmarks scale: made up, always the same.
#pragma once

#include <KWToolkit/platform/graphics/CGImage.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kw::bench {

using Bytes = std::vector<std::uint8_t>;

struct Size {
    int width, height;
    /// Bytes of so many pixels of four bytes each.
    std::size_t byteCount() const {
        return 4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};

/// Opaque BGRX, all X 255, or premultiplied RGBA; rows without padding, from the top down.
struct Picture {
    Size size;
    bool isOpaque;
    Bytes pixels;

    int stride() const { return 4 * size.width; }
    /// The channels that carry something; the first so many bytes of each pixel.
    int channels() const { return isOpaque ? 3 : 4; }
    /// Borrows the pixels.
    CGImageRef image() const;
};

/// Clouds of detail at all scales, shapes with sharp edges and small print. Opaque.
Picture photo(Size size);
/// One of 6000 x 4000, made when it is first asked for.
const Picture& largePhoto();
/// Soft and hard edges towards full transparency, on a square.
Picture icon(int side);
/// Black or white in each channel of each pixel. Opaque.
Picture noise(Size size);
/// Rings that get finer outwards, up to one in two pixels in the middle of each side. Opaque.
Picture zonePlate(int side);

} // namespace kw::bench
