// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/PatternBrush.h>

#include <KWToolkitQt/QtGraphicsContext.h>

#include <QColor>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace kw::qt {

namespace {

constexpr double farthest = 1 << 24;
constexpr double maximumSide = 1 << 14; // of a tile, in pixels
constexpr double maximumPixels = 1 << 26;
constexpr double maximumCells = 1 << 10; // that overlap

/// False for what is no number, too.
bool isNear(std::initializer_list<double> places) {
    return std::ranges::all_of(places, [](double place) { return std::fabs(place) <= farthest; });
}

} // namespace

QBrush patternBrush(const CGPattern& pattern, double alpha, const QTransform& toDevice) {
    const NSRect& bounds = pattern.bounds();
    double xStep = std::fabs(pattern.xStep());
    double yStep = std::fabs(pattern.yStep());
    const double xScale = std::hypot(toDevice.m11(), toDevice.m12());
    const double yScale = std::hypot(toDevice.m21(), toDevice.m22());
    const double width = std::round(xStep * xScale);
    const double height = std::round(yStep * yScale);
    // As many as reach into the place of one.
    const double columns = std::ceil(bounds.size.width / xStep);
    const double rows = std::ceil(bounds.size.height / yStep);
    const bool isDrawable = !NSIsEmptyRect(bounds) && width >= 1 && height >= 1
        && width <= maximumSide && height <= maximumSide && width * height <= maximumPixels
        && columns * rows <= maximumCells && toDevice.isInvertible()
        && isNear({bounds.origin.x, bounds.origin.y, xScale, yScale, toDevice.dx(), toDevice.dy()});
    if (!isDrawable)
        return Qt::NoBrush;
    if (pattern.tiling() == CGPatternTiling::noDistortion) {
        xStep = width / xScale;
        yStep = height / yScale;
    }

    QImage tile(
        static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
    if (tile.isNull())
        return Qt::NoBrush;
    tile.fill(Qt::transparent);
    {
        QPainter painter(&tile);
        for (int row = static_cast<int>(rows) - 1; row >= 0; --row) {
            for (int column = static_cast<int>(columns) - 1; column >= 0; --column) {
                painter.setTransform(QTransform::fromScale(width / xStep, height / yStep));
                painter.translate(-bounds.origin.x - column * xStep, row * yStep);
                painter.setClipRect(QRectF(bounds.origin.x, yStep - bounds.size.height,
                    bounds.size.width, bounds.size.height));
                QtGraphicsContext context(painter, {0, bounds.origin.y + yStep}, false);
                pattern.draw(context);
            }
        }
        painter.resetTransform();
        painter.setClipping(false);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(tile.rect(),
            QColor::fromRgbF(0, 0, 0, static_cast<float>(std::fmin(std::fmax(alpha, 0), 1))));
    }
    QBrush brush(tile);
    brush.setTransform(
        QTransform(xStep / width, 0, 0, -yStep / height, bounds.origin.x, bounds.origin.y + yStep));
    return brush;
}

} // namespace kw::qt
