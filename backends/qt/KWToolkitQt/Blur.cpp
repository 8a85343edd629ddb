// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/Blur.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kw::qt {

namespace {

constexpr int passes = 3;

// A box of a width that need not be whole: `reach` values to each side count fully, the next one by
// `edge` (Gwosdek and others, 2011, "extended box filtering").
struct Box {
    int reach;
    float edge;

    /// The box whose variance is that of one of the passes.
    explicit Box(double sigma) {
        const double variance = sigma * sigma / passes;
        reach = static_cast<int>((std::sqrt(12 * variance + 1) - 1) / 2);
        const double width = 2 * reach + 1;
        const double ends = 2 * ((reach + 1.0) * (reach + 1.0) - variance);
        edge = static_cast<float>(width * (variance - reach * (reach + 1) / 3.0) / ends);
    }
};

/// Blurs one line of values, `stride` apart.
void blurLine(uchar* line, int count, qsizetype stride, Box box, std::vector<float>& padded) {
    const int margin = passes * (box.reach + 1);
    const int length = count + 2 * margin;
    padded.assign(2 * static_cast<std::size_t>(length), 0);
    float* from = padded.data();
    float* to = from + length;
    for (int i = 0; i < count; ++i)
        from[margin + i] = line[i * stride];

    const float weight = 1 / (2 * static_cast<float>(box.reach) + 1 + 2 * box.edge);
    for (int pass = 0; pass < passes; ++pass) {
        const int first = box.reach + 1;
        float sum = 0;
        for (int i = 0; i <= 2 * box.reach; ++i)
            sum += from[i + 1];
        for (int i = first; i < length - first; ++i) {
            to[i] = weight * (sum + box.edge * (from[i - first] + from[i + first]));
            sum += from[i + first] - from[i - box.reach];
        }
        std::swap(from, to);
    }
    for (int i = 0; i < count; ++i)
        line[i * stride] = static_cast<uchar>(std::clamp(from[margin + i] + 0.5f, 0.f, 255.f));
}

} // namespace

int blurExtent(double sigma) { return sigma > 0 ? passes * (Box(sigma).reach + 1) : 0; }

void blurMask(QImage& mask, double sigma) {
    if (!(sigma > 0))
        return;
    const Box box(sigma);
    const qsizetype bytesPerLine = mask.bytesPerLine();
    uchar* const pixels = mask.bits();
    std::vector<float> padded;
    for (int y = 0; y < mask.height(); ++y)
        blurLine(pixels + y * bytesPerLine, mask.width(), 1, box, padded);
    for (int x = 0; x < mask.width(); ++x)
        blurLine(pixels + x, mask.height(), bytesPerLine, box, padded);
}

} // namespace kw::qt
