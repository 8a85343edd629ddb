// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <bench/imaging/ScalingPeers.h>

#include <zimg.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace kw::bench {

namespace {

constexpr std::size_t alignment = 64;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
using Buffer = std::unique_ptr<std::uint8_t[], Free>;

Buffer aligned(std::size_t byteCount) {
    void* const memory =
        std::aligned_alloc(alignment, (byteCount + alignment - 1) / alignment * alignment);
    if (!memory)
        throw std::bad_alloc();
    return Buffer(static_cast<std::uint8_t*>(memory));
}

/// A channel each.
struct Planes {
    Planes(Size planeSize, int planeCount)
        : size(planeSize)
        , stride(
              (static_cast<std::size_t>(planeSize.width) + alignment - 1) / alignment * alignment)
        , count(static_cast<std::size_t>(planeCount)) {
        for (std::size_t i = 0; i < count; ++i)
            planes[i] = aligned(stride * static_cast<std::size_t>(size.height));
    }

    void take(const std::uint8_t* pixels) {
        each(pixels, [](const std::uint8_t* pixel, std::uint8_t& place) { place = *pixel; });
    }
    void give(std::uint8_t* pixels) const {
        each(pixels, [](std::uint8_t* pixel, std::uint8_t place) { *pixel = place; });
    }

    Size size;
    std::size_t stride;
    std::size_t count;
    std::array<Buffer, 4> planes;

private:
    void each(auto* pixels, const auto& copy) const {
        const auto width = static_cast<std::size_t>(size.width);
        for (std::size_t y = 0; y < static_cast<std::size_t>(size.height); ++y) {
            for (std::size_t i = 0; i < count; ++i) {
                auto* pixel = pixels + y * width * 4 + i;
                std::uint8_t* const row = planes[i].get() + y * stride;
                for (std::size_t x = 0; x < width; ++x)
                    copy(pixel + 4 * x, row[x]);
            }
        }
    }
};

zimg_image_format formatOf(Size size) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(size.width);
    format.height = static_cast<unsigned>(size.height);
    format.pixel_type = ZIMG_PIXEL_BYTE;
    format.pixel_range = ZIMG_RANGE_FULL;
    return format;
}

/// Resizes a plane.
class Graph {
public:
    Graph(Size from, Size to) {
        zimg_graph_builder_params parameters;
        zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
        parameters.resample_filter = ZIMG_RESIZE_LANCZOS;
        parameters.filter_param_a = 3;
        parameters.cpu_type = ZIMG_CPU_AUTO_64B;
        const zimg_image_format source = formatOf(from);
        const zimg_image_format result = formatOf(to);
        m_graph.reset(zimg_filter_graph_build(&source, &result, &parameters));
        std::size_t byteCount = 0;
        if (!m_graph || zimg_filter_graph_get_tmp_size(m_graph.get(), &byteCount))
            fail();
        m_workspace = aligned(byteCount);
    }

    void resize(const Planes& from, const Planes& to) const {
        for (std::size_t i = 0; i < from.count; ++i) {
            zimg_image_buffer_const source {ZIMG_API_VERSION, {}};
            source.plane[0] = {
                from.planes[i].get(), static_cast<std::ptrdiff_t>(from.stride), ZIMG_BUFFER_MAX};
            zimg_image_buffer result {ZIMG_API_VERSION, {}};
            result.plane[0] = {
                to.planes[i].get(), static_cast<std::ptrdiff_t>(to.stride), ZIMG_BUFFER_MAX};
            if (zimg_filter_graph_process(m_graph.get(), &source, &result, m_workspace.get(),
                    nullptr, nullptr, nullptr, nullptr))
                fail();
        }
    }

private:
    [[noreturn]] static void fail() {
        std::array<char, 200> text {};
        zimg_get_last_error(text.data(), text.size());
        throw std::runtime_error(text.data());
    }

    struct FreeGraph {
        void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
    };
    std::unique_ptr<zimg_filter_graph, FreeGraph> m_graph;
    Buffer m_workspace;
};

/// Opaque where there is no plane for it.
Bytes interleaved(const Planes& planes) {
    Bytes pixels(planes.size.byteCount(), 255);
    planes.give(pixels.data());
    return pixels;
}

} // namespace

Scaling scalingByZimg(const Picture& picture, Size size) {
    const auto from = std::make_shared<Planes>(picture.size, picture.channels());
    from->take(picture.pixels.data());
    const auto to = std::make_shared<Planes>(size, picture.channels());
    const auto graph = std::make_shared<Graph>(picture.size, size);
    return {[=] {
                graph->resize(*from, *to);
                return 0.0;
            },
        [=] { return interleaved(*to); }};
}

Scaling scalingByZimgInterleaved(const Picture& picture, Size size) {
    const auto pixels = std::make_shared<Bytes>();
    return {[&picture, size, pixels] {
                Planes from(picture.size, picture.channels());
                from.take(picture.pixels.data());
                const Planes to(size, picture.channels());
                Graph(picture.size, size).resize(from, to);
                *pixels = interleaved(to);
                return 0.0;
            },
        [=] { return *pixels; }};
}

} // namespace kw::bench
