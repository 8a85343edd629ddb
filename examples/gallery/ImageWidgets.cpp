// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImageWidgets.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/NSImage.h>
#include <KWToolkitQt/QtImages.h>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QRadioButton>

#include <algorithm>
#include <memory>
#include <utility>

namespace gallery {

kw::NSBezierPath outlineOf(const kw::NSRect& rect) {
    kw::NSBezierPath path;
    path.moveToPoint({NSMinX(rect), NSMinY(rect)});
    path.lineToPoint({NSMaxX(rect), NSMinY(rect)});
    path.lineToPoint({NSMaxX(rect), NSMaxY(rect)});
    path.lineToPoint({NSMinX(rect), NSMaxY(rect)});
    path.closePath();
    return path;
}

namespace {

kw::NSColor chequered() {
    constexpr int side = 16;
    const auto tile =
        kw::NSBitmapImageRep::initWithLayout(kw::CGImageLayout::premultipliedRGBA(side, side));
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const bool isWhite = (x < side / 2) == (y < side / 2);
            tile->setColor(kw::NSColor::colorWithDeviceWhite(isWhite ? 1 : 0.85, 1), x, y);
        }
    }
    auto image = std::make_shared<kw::NSImage>();
    image->addRepresentation(tile);
    return kw::NSColor::colorWithPatternImage(image);
}

struct ImageView final : kw::NSView {
    using NSView::NSView;
    bool isFlipped() const override { return true; }
    void drawRect(kw::NSGraphicsContext& context, kw::NSRect rect) override;

    kw::NSColor ground = kw::NSColor::whiteColor();
    Excess excess = Excess::shrunk;
    bool isMarked = false;
    std::vector<kw::CGImageRef> images;
};

void ImageView::drawRect(kw::NSGraphicsContext& context, kw::NSRect rect) {
    context.setFillColor(ground);
    context.fill(outlineOf(rect));
    double width = 1;
    double height = 0;
    for (const auto& image : images) {
        width = std::max(width, static_cast<double>(image->width()));
        height += static_cast<double>(image->height());
    }
    const double scale = excess == Excess::cutOff
        ? 1
        : std::min({1.0, rect.size.width / width, rect.size.height / std::max(height, 1.0)});
    double y = std::round((rect.size.height - height * scale) / 2);
    for (const auto& image : images) {
        const double imageWidth = static_cast<double>(image->width()) * scale;
        const double imageHeight = static_cast<double>(image->height()) * scale;
        context.drawImage(*image,
            kw::NSMakeRect(
                std::round((rect.size.width - imageWidth) / 2), y, imageWidth, imageHeight));
        y += imageHeight;
    }
    if (isMarked) {
        kw::NSBezierPath frame = outlineOf(kw::NSInsetRect(rect, 2, 2));
        frame.setLineWidth(4);
        context.setStrokeColor(kw::NSColor::colorWithDeviceRed(0.2, 0.5, 0.95, 1));
        context.stroke(frame);
    }
}

ImageView& viewOf(const ImageWidget& widget) { return static_cast<ImageView&>(*widget.rootView()); }

} // namespace

ImageWidget::ImageWidget(QSize least, Ground ground, Excess excess)
    : ViewWidget(std::make_shared<ImageView>(kw::NSMakeRect(0, 0, least.width(), least.height()))) {
    setMinimumSize(least);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::NoFocus);
    viewOf(*this).ground =
        ground == Ground::dark ? kw::NSColor::colorWithDeviceWhite(0.12, 1) : chequered();
    viewOf(*this).excess = excess;
}

void ImageWidget::setImages(std::vector<kw::CGImageRef> images) {
    std::erase(images, nullptr);
    viewOf(*this).images = std::move(images);
    update();
}

void ImageWidget::setMarked(bool isMarked) {
    viewOf(*this).isMarked = isMarked;
    update();
}

ValueSlider::ValueSlider(const Range& range, std::function<QString(int)> words)
    : m_slider(new QSlider(Qt::Horizontal))
    , m_words(label(words(range.start))) {
    m_slider->setRange(range.least, range.most);
    m_slider->setValue(range.start);
    m_slider->setPageStep(range.click);
    m_slider->setMinimumWidth(100);
    m_words->setWordWrap(false);
    m_words->setMinimumWidth(m_words->fontMetrics().horizontalAdvance(words(range.most)));
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_words);
    connect(m_slider, &QSlider::valueChanged, this,
        [this, words = std::move(words)](int value) { m_words->setText(words(value)); });
}

void ValueSlider::onChange(const std::function<void()>& call) {
    connect(m_slider, &QSlider::valueChanged, this, [call] { call(); });
}

void ValueSlider::click(Tour& tour, Side side, const QString& expectedWords) {
    constexpr int margin = 3;
    const QPoint place(
        side == Side::left ? margin : m_slider->width() - margin, m_slider->height() / 2);
    tour.hands().pressMouse(*m_slider, place);
    tour.hands().releaseMouse(*m_slider, place);
    tour.expect("slider", expectedWords, [this] { return m_words->text(); });
}

QButtonGroup* choice(QWidget& parent, const QStringList& titles) {
    auto* const group = new QButtonGroup(&parent);
    auto* const layout = new QGridLayout(&parent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setColumnStretch(2, 1);
    for (int id = 0; const QString& title : titles) {
        auto* const button = new QRadioButton(title);
        button->setChecked(id == 0);
        group->addButton(button, id);
        layout->addWidget(button, id / 2, id % 2);
        ++id;
    }
    return group;
}

void arrange(QWidget& tab, QLayout* settings, QLayout* pictures) {
    auto* const left = new QVBoxLayout;
    left->addLayout(settings);
    left->addStretch();
    pictures->setSpacing(4);
    auto* const layout = new QHBoxLayout(&tab);
    layout->setSpacing(20);
    layout->addLayout(left, 1);
    layout->addLayout(pictures, 1);
}

QLabel* caption(const QString& text, bool isBold) {
    auto* const result = label(text, 1, isBold);
    result->setWordWrap(false);
    return result;
}

QString sizeText(double width, double height, const char* unit) {
    return QString("%1 × %2 %3").arg(width).arg(height).arg(unit);
}

QString sizeText(const kw::CGImageRef& image) {
    if (!image)
        return "nothing";
    return sizeText(
        static_cast<double>(image->width()), static_cast<double>(image->height()), "pixels");
}

kw::CGImageRef generatedPicture() {
    QImage image(400, 300, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QLinearGradient sky(0, 0, 0, 300);
    sky.setColorAt(0, QColor(60, 90, 200));
    sky.setColorAt(0.6, QColor(240, 150, 110));
    sky.setColorAt(1, QColor(90, 40, 90));
    painter.setBrush(sky);
    painter.drawRoundedRect(QRectF(0, 0, 400, 300), 60, 60);
    painter.setBrush(QColor(255, 225, 120));
    painter.drawEllipse(QPointF(290, 110), 50, 50);
    painter.setBrush(QColor(40, 120, 90));
    painter.drawPolygon(QPolygonF({{60, 300}, {190, 130}, {320, 300}}));
    painter.setBrush(QColor(200, 100, 50)); // where the gamma tab looks
    painter.drawRect(30, 130, 40, 40);
    // A hole.
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.drawEllipse(QPointF(340, 240), 30, 30);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    QFont font = painter.font();
    font.setPixelSize(54);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(255, 255, 255, 220));
    painter.drawText(image.rect().adjusted(0, 30, 0, 0), Qt::AlignHCenter, "Picture");
    painter.end();
    return kw::qt::imageFromQImage(image);
}

} // namespace gallery
