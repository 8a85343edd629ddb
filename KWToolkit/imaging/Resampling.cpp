#include <KWToolkit/imaging/Resampling.h>
#include <KWToolkit/platform/graphics/Pixels.h>
namespace kw {
bool drawScaled(const CGImage& image, const PixelRect& rect, std::int32_t, double,
    std::uint8_t* canvas, const CGImageLayout& canvasLayout) {
    for (std::int64_t y = 0; y < canvasLayout.height; ++y) {
        const std::int64_t top = canvasLayout.height - rect.y - rect.height;
        if (y < top || y >= top + rect.height)
            continue;
        for (std::int64_t x = std::max<std::int64_t>(0, rect.x);
            x < std::min(rect.x + rect.width, canvasLayout.width); ++x)
            readPremultipliedRGBA(image.layout(),
                image.row((y - top) * image.height() / rect.height),
                (x - rect.x) * image.width() / rect.width, 1,
                canvas + 4 * (y * canvasLayout.width + x));
    }
    return true;
}
} // namespace kw
