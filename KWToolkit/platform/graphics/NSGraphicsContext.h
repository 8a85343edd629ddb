// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGColor.h>
#include <KWToolkit/platform/graphics/CGImage.h>
#include <KWToolkit/platform/graphics/CGPattern.h>
#include <KWToolkit/platform/graphics/NSBezierPath.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSGradient.h>
#include <KWToolkit/platform/graphics/NSShadow.h>
#include <KWToolkit/platform/graphics/TextAttributes.h>

#include <string_view>

namespace kw {

/// Where a view draws. Coordinates are the view's own. Texts are UTF-8.
class KW_EXPORT NSGraphicsContext {
public:
    virtual ~NSGraphicsContext();

    virtual void saveGraphicsState() = 0;
    virtual void restoreGraphicsState() = 0;

    /// Puts a transform before the coordinates until the state is restored. Below one that cannot
    /// be undone, or that is no number, nothing is drawn.
    virtual void concat(const CGAffineTransform& transform) = 0;
    /// Narrows what is drawn to the inside of a path until the state is restored. An empty path has
    /// none.
    virtual void clip(const NSBezierPath& path) = 0;

    /// Saves the state. What is drawn from here on has no shadow, and is laid over the rest as one
    /// picture at `alpha` when the layer ends, with the shadow of now. An alpha that is 0, below or
    /// no number shows nothing; above 1 it is 1.
    virtual void beginTransparencyLayer(double alpha) = 0;
    /// Restores the state that the layer began with. Without a layer it does nothing.
    virtual void endTransparencyLayer() = 0;

    virtual void setFillColor(const NSColor& color) = 0;
    /// A pattern's cells begin at the lower left corner of what is drawn into, whatever its
    /// coordinates, and are not flipped.
    virtual void setFillColor(const CGColor& color) = 0;
    virtual void setStrokeColor(const NSColor& color) = 0;
    /// Puts a shadow under everything that is drawn until the state is restored. Its size and place
    /// are those of the view's points, whatever `concat` does.
    virtual void setShadow(const NSShadow& shadow) = 0;

    /// Whether edges are smoothed, until the state is restored; they are at first.
    virtual void setShouldAntialias(bool antialias) = 0;
    /// Whether text may be smoothed by subpixels, until the state is restored, where the desktop
    /// does that; it may at first.
    virtual void setShouldSmoothFonts(bool smooth) = 0;

    /// Fills a path with the fill color.
    virtual void fill(const NSBezierPath& path) = 0;
    /// Strokes a path with the stroke color, in the path's line width, centered on the outline. A
    /// width of 0 is the thinnest line that the device can draw; below 0 it counts as 0, and one
    /// that is no number strokes nothing.
    virtual void stroke(const NSBezierPath& path) = 0;
    /// Fills a path with a gradient whose line crosses the path's bounds at `angle` degrees,
    /// counter-clockwise where y is up: at 0 from left to right, at -90 from top to bottom. The
    /// line is just long enough for its first and last color to lie on the bounds' corners.
    virtual void drawGradient(
        const NSGradient& gradient, const NSBezierPath& path, double angle) = 0;

    /// Draws an image's pixels into a rectangle, upright whatever way the coordinates go.
    virtual void drawImage(const CGImage& image, const NSRect& rect) = 0;

    /// What `drawText` covers, on one line for each line of the text.
    virtual NSSize sizeOfText(std::string_view text, const TextAttributes& attributes) = 0;
    /// Draws a text whose box has its origin (lower left where y is up) at `origin`.
    virtual void drawText(
        std::string_view text, NSPoint origin, const TextAttributes& attributes) = 0;
    /// Draws a text into a rectangle from its upper edge on, as the paragraph style says. The first
    /// line is drawn in any case, a further one where it begins within the rectangle.
    virtual void drawTextInRect(
        std::string_view text, const NSRect& rect, const TextAttributes& attributes) = 0;
};

} // namespace kw
