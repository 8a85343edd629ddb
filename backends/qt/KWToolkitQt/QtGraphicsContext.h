// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkitQt/TextLayout.h>

#include <QBrush>
#include <QColor>
#include <QRectF>
#include <QString>
#include <QTransform>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

class QPainter;

namespace kw::qt {

/// Paints with a QPainter, at whatever device-pixel ratio it has. One point is one unit of the
/// painter's coordinates.
///
/// A transparency layer is a picture of the pixels inside the clip. On what has no pixels
/// (QPicture, PDF) each shape has the layer's alpha by itself, and the layer no shadow.
///
/// Without antialiasing a pixel is painted where its center lies inside; of centers on an edge
/// those on the lower and right edges of the device do. So at one pixel per point a line one point
/// wide along y = h paints the row of pixels below it, whichever way y goes; at two the rows on
/// both sides.
///
/// What has a coordinate that is no finite number is not drawn. Texts in a rectangle without a
/// width are not, either.
class QtGraphicsContext final : public NSGraphicsContext {
public:
    /// The painter's origin is the view's upper left corner. It is left as it was found, also where
    /// a drawing does not restore its states or end its layers.
    QtGraphicsContext(QPainter& painter, NSSize viewSize, bool isFlipped);
    ~QtGraphicsContext() override;

    void saveGraphicsState() override;
    void restoreGraphicsState() override;
    void concat(const CGAffineTransform& transform) override;
    void clip(const NSBezierPath& path) override;
    void beginTransparencyLayer(double alpha) override;
    void endTransparencyLayer() override;
    void setFillColor(const NSColor& color) override;
    void setFillColor(const CGColor& color) override;
    void setStrokeColor(const NSColor& color) override;
    void setShadow(const NSShadow& shadow) override;
    void setShouldAntialias(bool antialias) override;
    void setShouldSmoothFonts(bool smooth) override;
    void fill(const NSBezierPath& path) override;
    void stroke(const NSBezierPath& path) override;
    void drawGradient(const NSGradient& gradient, const NSBezierPath& path, double angle) override;
    void drawImage(const CGImage& image, const NSRect& rect) override;
    NSSize sizeOfText(std::string_view text, const TextAttributes& attributes) override;
    void drawText(std::string_view text, NSPoint origin, const TextAttributes& attributes) override;
    void drawTextInRect(
        std::string_view text, const NSRect& rect, const TextAttributes& attributes) override;

private:
    struct State {
        QBrush fill = Qt::black;
        QColor strokeColor = Qt::black;
        std::optional<NSShadow> shadow;
        bool isSmooth = true;
        bool hasSmoothFonts = true;
    };
    using Paint = std::function<void(QPainter&)>;

    struct Layer;

    QPainter& target() const;
    State& state() { return m_states.back(); }
    QBrush fillBrush();
    void drawNothing();
    std::shared_ptr<const TextLayout> layoutOf(std::string_view text,
        const TextAttributes& attributes, const std::optional<TextBox>& box = {});
    void paintText(const TextLayout& layout, QPointF corner, const TextAttributes& attributes);
    void paintShadow(const NSShadow& shadow, const QRectF& bounds, const Paint& paint,
        const std::optional<QString>& cacheKey);
    template <class ToPaint, class MakeKey>
    void paintWithShadow(const QRectF& bounds, const ToPaint& paint, const MakeKey& cacheKey);

    QPainter& m_painter; // of the view; within a layer see target()
    double m_height;
    bool m_isFlipped;
    QTransform m_viewToDevice; // before any `concat`
    std::vector<State> m_states {1}; // each but the first beside a saved state of a painter
    std::vector<std::unique_ptr<Layer>> m_layers;
};

} // namespace kw::qt
