// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtGraphicsContext.h>

#include <KWToolkitQt/Blur.h>
#include <KWToolkitQt/CacheKey.h>
#include <KWToolkitQt/PatternBrush.h>
#include <KWToolkitQt/QtFonts.h>
#include <KWToolkitQt/QtImages.h>

#include <QImage>
#include <QLinearGradient>
#include <QMargins>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <ranges>
#include <utility>

namespace kw::qt {

namespace {

constexpr double defaultMiterLimit = 10;
constexpr double tieBreak = 1.0 / 32; // less than what is seen, more than what Qt rounds away
constexpr double mostCachedPixels = 1 << 20; // of a shadow
constexpr double farthestPixel = 1 << 24; // of a shadow
constexpr double largestSigma = 512; // in pixels; wider shadows cannot be told from none
constexpr QMargins farthestShadow(2048, 2048, 2048, 2048); // of a layer, in pixels

QPointF toQt(NSPoint point) { return {point.x, point.y}; }

/// Transparent for a pattern.
QColor toQt(const CGColor& color) {
    const auto plain = NSColor::colorWithCGColor(color);
    return plain ? toQColor(*plain) : Qt::transparent;
}

QTransform toQt(const CGAffineTransform& matrix) {
    return {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty};
}

bool isFinite(NSPoint point) { return std::isfinite(point.x) && std::isfinite(point.y); }

/// Empty where a coordinate is no finite number.
QPainterPath toQt(const NSBezierPath& path) {
    QPainterPath result;
    if (!std::ranges::all_of(path.segments(), [](const NSBezierPath::Segment& segment) {
            return isFinite(segment.point) && isFinite(segment.control1)
                && isFinite(segment.control2);
        }))
        return result;
    result.reserve(static_cast<int>(3 * path.segments().size()));
    result.setFillRule(Qt::WindingFill);
    for (const auto& segment : path.segments()) {
        switch (segment.element) {
        case NSBezierPath::Element::moveTo:
            result.moveTo(toQt(segment.point));
            break;
        case NSBezierPath::Element::lineTo:
            result.lineTo(toQt(segment.point));
            break;
        case NSBezierPath::Element::curveTo:
            result.cubicTo(toQt(segment.control1), toQt(segment.control2), toQt(segment.point));
            break;
        case NSBezierPath::Element::closePath:
            result.closeSubpath();
            break;
        }
    }
    return result;
}

CacheKey& operator<<(CacheKey& key, const NSBezierPath& path) {
    for (const auto& segment : path.segments()) {
        key << segment.element << segment.point.x << segment.point.y;
        if (segment.element == NSBezierPath::Element::curveTo)
            key << segment.control1.x << segment.control1.y << segment.control2.x
                << segment.control2.y;
    }
    return key;
}

const auto notCached = [] { return std::nullopt; };

/// The pixels that a painter can reach; nothing where it has none.
std::optional<QRect> visiblePixels(const QPainter& painter) {
    const QPaintEngine& engine = *painter.paintEngine();
    if (engine.type() != QPaintEngine::Raster && engine.type() != QPaintEngine::OpenGL2)
        return std::nullopt;
    const QPaintDevice& device = *engine.paintDevice();
    QRect area(0, 0, device.width(), device.height());
    if (!engine.systemClip().isEmpty())
        area &= engine.systemClip().boundingRect();
    if (painter.hasClipping()) {
        const QRectF clip = painter.deviceTransform().mapRect(painter.clipBoundingRect());
        area &= clip.intersected(area).toAlignedRect();
    }
    return area;
}

bool isFinite(const NSShadow& shadow) {
    return std::isfinite(shadow.offset.width) && std::isfinite(shadow.offset.height)
        && std::isfinite(shadow.blurRadius);
}

/// A shadow in pixels.
struct ShadowReach {
    ShadowReach(const NSShadow& shadow, const QTransform& viewToDevice) {
        const double scale = std::sqrt(std::abs(viewToDevice.determinant()));
        sigma = std::min(shadow.blurRadius / 2 * scale, largestSigma);
        extent = blurExtent(sigma);
        offset = QPointF(shadow.offset.width, -shadow.offset.height) * scale;
    }
    /// Where what casts a shadow into an area lies.
    QRectF sourceOf(const QRectF& area) const {
        return area.translated(-offset).adjusted(-extent, -extent, extent, extent);
    }

    double sigma;
    int extent;
    QPointF offset;
};

} // namespace

struct QtGraphicsContext::Layer {
    QImage picture; // null where what is drawn goes to the painter below
    std::unique_ptr<QPainter> painter;
    QPoint corner; // of the picture, in the pixels below
    double alpha = 1;
    std::size_t states = 0; // with that of the layer
};

QtGraphicsContext::QtGraphicsContext(QPainter& painter, NSSize viewSize, bool isFlipped)
    : m_painter(painter)
    , m_height(viewSize.height)
    , m_isFlipped(isFlipped) {
    m_painter.save();
    m_painter.setRenderHints(
        QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    if (!isFlipped) {
        m_painter.translate(0, viewSize.height);
        m_painter.scale(1, -1);
    }
    m_viewToDevice = m_painter.deviceTransform();
}

QtGraphicsContext::~QtGraphicsContext() {
    while (!m_layers.empty())
        endTransparencyLayer();
    while (m_states.size() > 1)
        restoreGraphicsState();
    m_painter.restore();
}

QPainter& QtGraphicsContext::target() const {
    for (const auto& layer : m_layers | std::views::reverse) {
        if (layer->painter)
            return *layer->painter;
    }
    return m_painter;
}

void QtGraphicsContext::saveGraphicsState() {
    target().save();
    m_states.push_back(state());
}

void QtGraphicsContext::restoreGraphicsState() {
    // Not beyond the beginning of a layer.
    if (m_states.size() > (m_layers.empty() ? 1 : m_layers.back()->states)) {
        m_states.pop_back();
        target().restore();
    }
}

void QtGraphicsContext::concat(const CGAffineTransform& transform) {
    const QTransform matrix = toQt(transform);
    const QTransform whole = matrix * target().worldTransform();
    if (matrix.isInvertible() && whole.isInvertible() && std::isfinite(whole.determinant())
        && std::isfinite(whole.dx() + whole.dy()))
        target().setWorldTransform(whole);
    else
        drawNothing();
}

void QtGraphicsContext::clip(const NSBezierPath& path) {
    target().setClipPath(toQt(path), Qt::IntersectClip);
}

void QtGraphicsContext::drawNothing() { target().setClipRect(QRectF(), Qt::IntersectClip); }

void QtGraphicsContext::beginTransparencyLayer(double alpha) {
    const auto& shadow = state().shadow;
    const std::optional<QRect> visible = visiblePixels(target());
    QRect area = visible.value_or(QRect());
    if (shadow && !area.isEmpty()) {
        const QRectF source = ShadowReach(*shadow, m_viewToDevice).sourceOf(area);
        area |= source.intersected(area.marginsAdded(farthestShadow)).toAlignedRect();
    }
    const bool isNothing = !(alpha > 0) || (visible && area.isEmpty());
    const bool isDirect = alpha >= 1 && !shadow;
    auto layer = std::make_unique<Layer>();
    if (visible && !isNothing && !isDirect)
        layer->picture = QImage(area.size(), QImage::Format_ARGB32_Premultiplied);

    saveGraphicsState();
    state().shadow.reset();
    layer->states = m_states.size();
    if (isNothing) {
        drawNothing();
    } else if (!layer->picture.isNull()) {
        layer->alpha = std::min(alpha, 1.0);
        layer->corner = area.topLeft();
        layer->picture.fill(Qt::transparent);
        layer->painter = std::make_unique<QPainter>(&layer->picture);
        layer->painter->setRenderHints(target().renderHints());
        const QTransform toPicture = QTransform::fromTranslate(-area.x(), -area.y());
        layer->painter->setWorldTransform(target().deviceTransform() * toPicture);
        m_viewToDevice *= toPicture;
    } else if (!isDirect) {
        target().setOpacity(target().opacity() * std::min(alpha, 1.0));
    }
    m_layers.push_back(std::move(layer));
}

void QtGraphicsContext::endTransparencyLayer() {
    if (m_layers.empty())
        return;
    while (m_states.size() > m_layers.back()->states)
        restoreGraphicsState();
    const std::unique_ptr<Layer> layer = std::move(m_layers.back());
    m_layers.pop_back();
    restoreGraphicsState();
    if (!layer->painter)
        return;
    layer->painter->end();
    m_viewToDevice *= QTransform::fromTranslate(layer->corner.x(), layer->corner.y());
    const QTransform toView = target().deviceTransform().inverted();
    const QRectF pixels(layer->corner, layer->picture.size());
    paintWithShadow(
        toView.mapRect(pixels),
        [&](QPainter& painter) {
            painter.save();
            painter.setWorldTransform(toView, true);
            painter.setOpacity(painter.opacity() * layer->alpha);
            painter.drawImage(pixels.topLeft(), layer->picture);
            painter.restore();
        },
        notCached);
}

void QtGraphicsContext::setFillColor(const NSColor& color) {
    const auto pattern =
        color.colorSpace() == CGColorSpace::pattern ? color.CGColor() : std::nullopt;
    if (pattern)
        setFillColor(*pattern);
    else
        state().fill = toQColor(color);
}

void QtGraphicsContext::setFillColor(const CGColor& color) {
    if (!color.pattern()) {
        state().fill = toQt(color);
        return;
    }
    QTransform toView = toQt(color.pattern()->matrix());
    if (m_isFlipped)
        toView *= QTransform(1, 0, 0, -1, 0, m_height);
    QBrush brush = patternBrush(*color.pattern(), color.alpha(), toView * m_viewToDevice);
    brush.setTransform(brush.transform() * toView);
    state().fill = std::move(brush);
}

void QtGraphicsContext::setShouldAntialias(bool antialias) {
    state().isSmooth = antialias;
    target().setRenderHint(QPainter::Antialiasing, antialias);
}

void QtGraphicsContext::setShouldSmoothFonts(bool smooth) { state().hasSmoothFonts = smooth; }

void QtGraphicsContext::setStrokeColor(const NSColor& color) {
    state().strokeColor = toQColor(color);
}

void QtGraphicsContext::setShadow(const NSShadow& shadow) {
    state().shadow = isFinite(shadow) ? std::optional(shadow) : std::nullopt;
}

QBrush QtGraphicsContext::fillBrush() {
    QBrush brush = state().fill;
    // A pattern stays where the view has it.
    if (brush.style() == Qt::TexturePattern)
        brush.setTransform(
            brush.transform() * m_viewToDevice * target().deviceTransform().inverted());
    return brush;
}

void QtGraphicsContext::fill(const NSBezierPath& path) {
    const QPainterPath outline = toQt(path);
    if (outline.isEmpty())
        return;
    const QBrush brush = fillBrush();
    paintWithShadow(
        outline.boundingRect(), [&](QPainter& painter) { painter.fillPath(outline, brush); },
        [&]() -> std::optional<QString> {
            if (brush.style() != Qt::SolidPattern)
                return std::nullopt;
            CacheKey key;
            key << 'f' << brush.color().alpha() << path;
            return key.text();
        });
}

void QtGraphicsContext::stroke(const NSBezierPath& path) {
    const QPainterPath outline = toQt(path);
    if (outline.isEmpty() || !std::isfinite(path.lineWidth()))
        return;
    const double width = std::max(path.lineWidth(), 0.0);
    QPen pen(state().strokeColor, width, Qt::SolidLine, Qt::FlatCap, Qt::SvgMiterJoin);
    pen.setMiterLimit(defaultMiterLimit);
    const double reach = std::max(width, 1.0) * defaultMiterLimit / 2;
    const auto paint = [&](QPainter& painter) {
        if (state().isSmooth) {
            painter.strokePath(outline, pen);
            return;
        }
        // Qt takes centers on the lower edge instead.
        const QTransform before = painter.worldTransform();
        painter.setWorldTransform(before * QTransform::fromTranslate(0, -tieBreak));
        painter.strokePath(outline, pen);
        painter.setWorldTransform(before);
    };
    paintWithShadow(outline.boundingRect().adjusted(-reach, -reach, reach, reach), paint,
        [&]() -> std::optional<QString> {
            CacheKey key;
            key << 's' << pen.color().alpha() << width << path;
            return key.text();
        });
}

void QtGraphicsContext::drawGradient(
    const NSGradient& gradient, const NSBezierPath& path, double angle) {
    const QPainterPath outline = toQt(path);
    if (outline.isEmpty() || gradient.stops().empty() || !std::isfinite(angle))
        return;
    const QRectF bounds = outline.boundingRect();
    const double radians = angle * std::numbers::pi / 180 * (m_isFlipped ? -1 : 1);
    const QPointF direction(std::cos(radians), std::sin(radians));
    const QPointF half = direction
        * (std::abs(direction.x()) * bounds.width() + std::abs(direction.y()) * bounds.height())
        / 2;
    QLinearGradient brush(bounds.center() - half, bounds.center() + half);
    for (const auto& stop : gradient.stops()) {
        if (!std::isnan(stop.location))
            brush.setColorAt(std::clamp(stop.location, 0.0, 1.0), toQColor(stop.color));
    }
    paintWithShadow(
        bounds, [&](QPainter& painter) { painter.fillPath(outline, brush); },
        [&]() -> std::optional<QString> {
            CacheKey key;
            key << 'g' << radians;
            for (const auto& [location, color] : brush.stops())
                key << location << color.alpha();
            key << path;
            return key.text();
        });
}

void QtGraphicsContext::drawImage(const CGImage& image, const NSRect& rect) {
    const QRectF bounds =
        QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height).normalized();
    QImage picture = toQImage(CGImage::create(image.layout(), image.pixels()));
    if (picture.isNull() || !(bounds.width() > 0 && bounds.height() > 0)
        || !std::isfinite(bounds.left() + bounds.top() + bounds.width() + bounds.height()))
        return;
    // Qt looks at four pixels at most for each that it draws.
    const QSizeF drawn = target().deviceTransform().mapRect(bounds).size();
    if (2 * drawn.width() < picture.width() || 2 * drawn.height() < picture.height())
        picture = picture.scaled(drawn.boundedTo(picture.size()).toSize().expandedTo({1, 1}),
            Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    paintWithShadow(
        bounds,
        [&](QPainter& painter) {
            painter.save();
            if (!m_isFlipped) {
                painter.translate(0, bounds.top() + bounds.bottom());
                painter.scale(1, -1);
            }
            painter.drawImage(bounds, picture);
            painter.restore();
        },
        notCached);
}

std::shared_ptr<const TextLayout> QtGraphicsContext::layoutOf(
    std::string_view text, const TextAttributes& attributes, const std::optional<TextBox>& box) {
    int strategy = QFont::PreferDefault;
    if (!state().hasSmoothFonts)
        strategy |= QFont::NoSubpixelAntialias;
    if (!state().isSmooth)
        strategy |= QFont::NoAntialias;
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): strategies are combined so
    const auto combined = static_cast<QFont::StyleStrategy>(strategy);
    return textLayout(text, attributes.font, combined, *target().device(), box);
}

NSSize QtGraphicsContext::sizeOfText(std::string_view text, const TextAttributes& attributes) {
    const QSizeF size = layoutOf(text, attributes)->bounds().size();
    return {size.width(), size.height()};
}

void QtGraphicsContext::drawText(
    std::string_view text, NSPoint origin, const TextAttributes& attributes) {
    if (text.empty() || !isFinite(origin))
        return;
    const auto layout = layoutOf(text, attributes);
    const double height = m_isFlipped ? 0 : layout->bounds().height();
    paintText(*layout, {origin.x, origin.y + height}, attributes);
}

void QtGraphicsContext::drawTextInRect(
    std::string_view text, const NSRect& rect, const TextAttributes& attributes) {
    if (text.empty() || !isFinite(rect.origin) || !std::isfinite(rect.size.width)
        || !std::isfinite(rect.size.height) || !(rect.size.width > 0))
        return;
    const auto layout = layoutOf(text, attributes, TextBox {rect.size, attributes.paragraphStyle});
    paintText(*layout, {NSMinX(rect), m_isFlipped ? NSMinY(rect) : NSMaxY(rect)}, attributes);
}

void QtGraphicsContext::paintText(
    const TextLayout& layout, QPointF corner, const TextAttributes& attributes) {
    const QTransform upright(1, 0, 0, m_isFlipped ? 1 : -1, corner.x(), corner.y());
    const QColor color = toQColor(attributes.color);
    const auto paint = [&](QPainter& painter) {
        const QTransform before = painter.worldTransform();
        painter.setWorldTransform(upright, true);
        painter.setPen(color);
        layout.draw(painter);
        painter.setWorldTransform(before);
    };
    const QRectF bounds = upright.mapRect(layout.reach());
    const auto cacheKey = [&]() -> std::optional<QString> {
        CacheKey key;
        key << 't' << color.alpha() << qHash(layout.font()) << corner.x() << corner.y();
        return key.text() + layout.key();
    };
    if (attributes.shadow && isFinite(*attributes.shadow))
        paintShadow(*attributes.shadow, bounds, paint, cacheKey());
    paintWithShadow(bounds, paint, cacheKey);
}

template <class ToPaint, class MakeKey>
void QtGraphicsContext::paintWithShadow(
    const QRectF& bounds, const ToPaint& paint, const MakeKey& cacheKey) {
    if (const auto& shadow = state().shadow)
        paintShadow(*shadow, bounds, std::ref(paint), cacheKey());
    paint(target());
}

// Drawn in the device's pixels, so that the shadow is as fine as what casts it.
void QtGraphicsContext::paintShadow(const NSShadow& shadow, const QRectF& bounds,
    const Paint& paint, const std::optional<QString>& cacheKey) {
    QPainter& painter = target();
    const QTransform toDevice = painter.deviceTransform();
    const ShadowReach reach(shadow, m_viewToDevice);
    QRectF pixels =
        toDevice.mapRect(bounds).adjusted(-reach.extent, -reach.extent, reach.extent, reach.extent);
    const auto visible = visiblePixels(painter);
    if (!toDevice.isInvertible()
        || (visible && !pixels.translated(reach.offset).intersects(*visible)))
        return;
    const bool isCached = cacheKey && pixels.width() * pixels.height() < mostCachedPixels;
    if (visible && !isCached)
        pixels &= reach.sourceOf(*visible);
    if (!QRectF(-farthestPixel, -farthestPixel, 2 * farthestPixel, 2 * farthestPixel)
            .contains(pixels))
        return;
    const QRect area = pixels.toAlignedRect();

    // What is scrolled by whole pixels has the same key: only the place within the area is in it.
    const QTransform toArea = toDevice * QTransform::fromTranslate(-area.x(), -area.y());
    const QColor color = toQColor(shadow.color);
    CacheKey key;
    QPixmap picture;
    if (isCached) {
        key << std::string_view("kw-shadow") << color.rgba() << reach.sigma << state().isSmooth
            << area.width() << area.height();
        for (const double value :
            {toArea.m11(), toArea.m12(), toArea.m21(), toArea.m22(), toArea.dx(), toArea.dy()})
            key << value;
        key << *cacheKey;
    }
    if (!isCached || !QPixmapCache::find(key.text(), &picture)) {
        QImage mask(area.size(), QImage::Format_Alpha8);
        if (mask.isNull())
            return;
        mask.fill(0);
        {
            QPainter caster(&mask);
            caster.setRenderHints(painter.renderHints());
            caster.setTransform(toArea);
            paint(caster);
        }
        blurMask(mask, reach.sigma);
        QImage colored(area.size(), QImage::Format_ARGB32_Premultiplied);
        if (colored.isNull())
            return;
        colored.fill(color);
        QPainter colorer(&colored);
        colorer.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        colorer.drawImage(0, 0, mask);
        colorer.end();
        picture = QPixmap::fromImage(std::move(colored));
        if (isCached)
            QPixmapCache::insert(key.text(), picture);
    }

    const QTransform before = painter.worldTransform();
    painter.setWorldTransform((before.inverted() * toDevice).inverted());
    painter.drawPixmap(area.topLeft() + reach.offset, picture);
    painter.setWorldTransform(before);
}

} // namespace kw::qt
