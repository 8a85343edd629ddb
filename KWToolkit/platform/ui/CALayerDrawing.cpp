// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/ui/CALayer.h>

#include <algorithm>
#include <cmath>

namespace kw {

namespace {

/// What is larger or farther away, in points, is not drawn itself; its sublayers are, unless it
/// masks them.
constexpr double farthest = 1e6;

enum class Winding { counterclockwise, clockwise };

/// Adds a rectangle with round corners, no rounder than its shorter side allows.
void append(NSBezierPath& path, const NSRect& rect, double radius, Winding winding) {
    NSPoint corners[] = {
        {NSMaxX(rect), NSMinY(rect)},
        {NSMaxX(rect), NSMaxY(rect)},
        {NSMinX(rect), NSMaxY(rect)},
        {NSMinX(rect), NSMinY(rect)},
    };
    if (winding == Winding::clockwise)
        std::ranges::reverse(corners);
    const double round = std::clamp(radius, 0.0, std::min(rect.size.width, rect.size.height) / 2);
    path.moveToPoint({NSMidX(rect), NSMinY(rect)});
    for (std::size_t i = 0; i < std::size(corners); ++i)
        path.appendBezierPathWithArcFromPoint(
            corners[i], corners[(i + 1) % std::size(corners)], round);
    path.closePath();
}

NSBezierPath outline(const NSRect& bounds, double radius) {
    NSBezierPath path;
    append(path, bounds, radius, Winding::counterclockwise);
    return path;
}

NSBezierPath border(const NSRect& bounds, double width, double radius) {
    NSBezierPath path = outline(bounds, radius);
    // What winds the other way is cut out.
    if (const NSRect inside = NSInsetRect(bounds, width, width); !NSIsEmptyRect(inside))
        append(path, inside, radius - width, Winding::clockwise);
    return path;
}

bool isNear(const NSRect& rect) {
    return std::abs(NSMinX(rect)) <= farthest && std::abs(NSMinY(rect)) <= farthest
        && std::abs(NSMaxX(rect)) <= farthest && std::abs(NSMaxY(rect)) <= farthest;
}

bool isVisible(const std::optional<CGColor>& color) { return color && color->alpha() > 0; }

void fill(NSGraphicsContext& context, const CGColor& color, const NSBezierPath& path) {
    context.setFillColor(color);
    context.fill(path);
}

void drawAt(
    NSGraphicsContext& context, double alpha, const CGImageRef& image, const NSRect& bounds) {
    if (!image || alpha <= 0)
        return;
    if (alpha < 1)
        context.beginTransparencyLayer(alpha);
    context.drawImage(*image, bounds);
    if (alpha < 1)
        context.endTransparencyLayer();
}

void drawContents(NSGraphicsContext& context, const CAContents& contents, const NSRect& bounds) {
    const auto& [image, former, progress] = contents;
    // Under an opaque picture the former one can stay; else it would shine through to the end.
    const bool coversFormer = image && !image->layout().hasAlpha();
    if (progress < 1)
        drawAt(context, coversFormer ? 1 : 1 - progress, former, bounds);
    drawAt(context, progress, image, bounds);
}

} // namespace

void CALayer::draw(NSGraphicsContext& context) const {
    const CALayerValues shown = presentationValues();
    const double alpha = std::min(shown.opacity, 1.0) * (1 - std::clamp(shown.hidden, 0.0, 1.0));
    const CGAffineTransform matrix = shown.toSuperlayer();
    const bool isFlat = matrix.a * matrix.d - matrix.b * matrix.c == 0;
    if (!(alpha > 0) || isFlat || !isFinite(matrix))
        return;
    const NSRect& bounds = shown.bounds;
    const bool hasInside = !NSIsEmptyRect(bounds) && isNear(bounds) && isNear(shown.frame());
    const bool hasOutside = !m_masksToBounds && !m_sublayers.empty();
    if (!hasInside && !hasOutside)
        return;

    context.saveGraphicsState();
    context.concat(matrix);
    if (alpha < 1) {
        // Only what is needed is drawn apart.
        if (!hasOutside)
            context.clip(outline(NSInsetRect(bounds, -1, -1), 0));
        context.beginTransparencyLayer(alpha);
    }

    if (hasInside && isVisible(shown.backgroundColor))
        fill(context, *shown.backgroundColor, outline(bounds, shown.cornerRadius));
    if (m_masksToBounds) {
        context.saveGraphicsState();
        context.clip(outline(bounds, shown.cornerRadius));
    }
    if (hasInside)
        drawContents(context, shown.contents, bounds);
    for (const auto& layer : m_sublayers)
        layer->draw(context);
    if (m_masksToBounds)
        context.restoreGraphicsState();
    if (hasInside && shown.borderWidth > 0 && isVisible(shown.borderColor))
        fill(context, *shown.borderColor, border(bounds, shown.borderWidth, shown.cornerRadius));

    if (alpha < 1)
        context.endTransparencyLayer();
    context.restoreGraphicsState();
}

} // namespace kw
