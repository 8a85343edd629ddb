// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/Pictures.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>

namespace kw::bench {

namespace {

using Random = std::mt19937;
using Color = std::array<float, 3>;

float between(Random& random, float low, float high) {
    return low + (high - low) * static_cast<float>(random()) / 4294967296.0F;
}

std::uint8_t byteOf(float value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 255.0F)));
}

/// A plane of numbers around 0.
struct Plane {
    explicit Plane(Size planeSize)
        : size(planeSize)
        , values(planeSize.byteCount() / 4) { }
    float* row(int y) {
        return values.data()
            + static_cast<std::ptrdiff_t>(y) * static_cast<std::ptrdiff_t>(size.width);
    }
    Size size;
    std::vector<float> values;
};

/// Adds random values of a coarser grid, and what is between them on straight lines.
void addOctave(Plane& plane, int cell, float strength, Random& random) {
    Plane grid({plane.size.width / cell + 2, plane.size.height / cell + 2});
    for (float& value : grid.values)
        value = between(random, -strength, strength);
    std::vector<float> line(static_cast<std::size_t>(grid.size.width));
    for (int y = 0; y < plane.size.height; ++y) {
        const float* const above = grid.row(y / cell);
        const float* const below = grid.row(y / cell + 1);
        const float down = static_cast<float>(y % cell) / static_cast<float>(cell);
        for (std::size_t i = 0; i < line.size(); ++i)
            line[i] = above[i] + (below[i] - above[i]) * down;
        float* out = plane.row(y);
        for (int x = 0; x < plane.size.width; ++x) {
            const auto place = static_cast<std::size_t>(x / cell);
            const float across = static_cast<float>(x % cell) / static_cast<float>(cell);
            *out++ += line[place] + (line[place + 1] - line[place]) * across;
        }
    }
}

/// As strong at each scale as the scale is coarse.
Plane clouds(Size size, int finest, Random& random) {
    Plane plane(size);
    float strength = 70;
    for (int cell = std::max(size.width, size.height) / 3; cell >= finest; cell /= 2) {
        addOctave(plane, cell, std::max(strength, 5.0F), random);
        strength *= 0.62F;
    }
    return plane;
}

void fill(Picture& picture, int left, int top, int right, int bottom, const Color& color,
    const auto& isInside) {
    for (int y = std::max(top, 0); y < std::min(bottom, picture.size.height); ++y) {
        for (int x = std::max(left, 0); x < std::min(right, picture.size.width); ++x) {
            if (!isInside(x, y))
                continue;
            std::uint8_t* const pixel = &picture.pixels[static_cast<std::size_t>(y)
                    * static_cast<std::size_t>(picture.stride())
                + 4 * static_cast<std::size_t>(x)];
            for (std::size_t i = 0; i < color.size(); ++i)
                pixel[i] = byteOf(0.25F * static_cast<float>(pixel[i]) + 0.75F * color[i]);
        }
    }
}

constexpr auto everywhere = [](int, int) { return true; };

void addShapes(Picture& picture, Random& random) {
    const auto width = static_cast<float>(picture.size.width);
    const auto height = static_cast<float>(picture.size.height);
    for (int i = 0; i < 40; ++i) {
        const float x = between(random, 0, width);
        const float y = between(random, 0, height);
        const float a = between(random, 0.01F, 0.12F) * width;
        const float b = between(random, 0.01F, 0.12F) * height;
        const Color color {
            between(random, 0, 255), between(random, 0, 255), between(random, 0, 255)};
        const float slant = between(random, -1, 1);
        const bool isRound = i % 2 == 0;
        fill(picture, static_cast<int>(x - a), static_cast<int>(y - b), static_cast<int>(x + a),
            static_cast<int>(y + b), color, [=](int px, int py) {
                const float across = (static_cast<float>(px) - x) / a;
                const float down = (static_cast<float>(py) - y) / b;
                return isRound ? across * across + down * down < 1
                               : std::fabs(across + slant * down) < 0.6F;
            });
    }
}

/// Lines of made-up letters, five dots by seven, black on nearly white.
void addPrint(Picture& picture, Random& random) {
    const int left = picture.size.width / 8;
    const int top = picture.size.height / 2;
    const int right = left + picture.size.width / 4;
    const int bottom = top + picture.size.height / 4;
    fill(picture, left, top, right, bottom, {250, 250, 250}, everywhere);
    const int dot = std::max(1, picture.size.width / 3000);
    for (int y = top + 2 * dot; y + 9 * dot < bottom; y += 11 * dot) {
        for (int x = left + 2 * dot; x + 5 * dot < right; x += 6 * dot) {
            const auto letter = static_cast<std::uint64_t>(random()) << 32 | random();
            for (int i = 0; i < 35; ++i) {
                const int dotX = x + i % 5 * dot;
                const int dotY = y + i / 5 * dot;
                if (letter >> i & 1)
                    fill(picture, dotX, dotY, dotX + dot, dotY + dot, {0, 0, 0}, everywhere);
            }
        }
    }
}

} // namespace

CGImageRef Picture::image() const {
    CGImageLayout layout = CGImageLayout::premultipliedRGBA(size.width, size.height);
    if (isOpaque) {
        layout.alphaInfo = CGImageAlphaInfo::noneSkipFirst;
        layout.byteOrder = CGImageByteOrder::little;
    }
    return CGImage::create(
        layout, std::shared_ptr<const std::uint8_t[]>(std::shared_ptr<void>(), pixels.data()));
}

Picture photo(Size size) {
    Random random; // NOLINT(bugprone-random-generator-seed): always the same picture
    Picture picture {size, true, Bytes(size.byteCount())};
    Plane light = clouds(size, 1, random);
    Plane warmth = clouds(size, 8, random);
    std::uint8_t* pixel = picture.pixels.data();
    for (std::size_t i = 0; i < light.values.size(); ++i, pixel += 4) {
        const float value = 120 + light.values[i];
        pixel[0] = byteOf(value - 0.7F * warmth.values[i]);
        pixel[1] = byteOf(value);
        pixel[2] = byteOf(value + 0.5F * warmth.values[i]);
        pixel[3] = 255;
    }
    addShapes(picture, random);
    addPrint(picture, random);
    return picture;
}

const Picture& largePhoto() {
    static const Picture picture = photo({6000, 4000});
    return picture;
}

Picture icon(int side) {
    Picture picture {{side, side}, false, Bytes(Size {side, side}.byteCount())};
    const auto scale = 2 / static_cast<float>(side);
    std::uint8_t* pixel = picture.pixels.data();
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column, pixel += 4) {
            const float x = (static_cast<float>(column) + 0.5F) * scale - 1;
            const float y = (static_cast<float>(row) + 0.5F) * scale - 1;
            const float distance = std::hypot(x, y);
            // A glow that fades out, a disc with a hard edge, a square hole and a bar over all.
            float alpha = std::clamp(2 - 2 * distance, 0.0F, 1.0F);
            Color color {255, 160 + 95 * y, 40};
            if (distance < 0.7F) {
                alpha = 1;
                color = {30 + 60 * x, 90 + 80 * y, 220};
            }
            if (std::fabs(x + 0.2F) < 0.13F && std::fabs(y) < 0.31F)
                alpha = 0;
            if (std::fabs(x - y * 0.3F - 0.3F) < 0.02F) {
                alpha = 1;
                color = {255, 255, 255};
            }
            for (std::size_t i = 0; i < color.size(); ++i)
                pixel[i] = byteOf(std::clamp(color[i], 0.0F, 255.0F) * alpha);
            pixel[3] = byteOf(255 * alpha);
        }
    }
    return picture;
}

Picture noise(Size size) {
    Random random; // NOLINT(bugprone-random-generator-seed): always the same picture
    Picture picture {size, true, Bytes(size.byteCount(), 255)};
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        if (i % 4 != 3)
            picture.pixels[i] = random() & 1 ? 255 : 0;
    }
    return picture;
}

Picture zonePlate(int side) {
    Picture picture {{side, side}, true, Bytes(Size {side, side}.byteCount(), 255)};
    std::uint8_t* pixel = picture.pixels.data();
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column, pixel += 4) {
            const double x = column + 0.5 - side / 2.0;
            const double y = row + 0.5 - side / 2.0;
            const double wave = std::cos(std::numbers::pi * (x * x + y * y) / side);
            std::fill(pixel, pixel + 3, byteOf(static_cast<float>(127.5 + 127.5 * wave)));
        }
    }
    return picture;
}

} // namespace kw::bench
