// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImageTabs.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/imaging/NSImage+Thumb.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>

#include <QCheckBox>

#include <memory>

namespace gallery {

namespace {

struct PatternView final : kw::NSView {
    using NSView::NSView;
    bool isFlipped() const override { return isUpsideDown; }
    void drawRect(kw::NSGraphicsContext& context, kw::NSRect rect) override {
        context.setFillColor(kw::NSColor::whiteColor());
        context.fill(outlineOf(rect));
        context.setFillColor(kw::NSColor::colorWithPatternImage(image));
        context.fill(outlineOf(rect));
    }

    bool isUpsideDown = false;
    std::shared_ptr<kw::NSImage> image;
};

class PatternTab final : public ImageTab {
public:
    PatternTab()
        : m_side(new ValueSlider(
              {8, 200, 80, 40}, [](int side) { return QString("%1 pixels wide").arg(side); }))
        , m_flipped(new QCheckBox("Flipped view"))
        , m_view(std::make_shared<PatternView>(kw::NSMakeRect(0, 0, 220, 200)))
        , m_widget(new kw::qt::ViewWidget(m_view)) {
        m_widget->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        m_widget->setFocusPolicy(Qt::NoFocus);
        auto* const settings = factsLayout({{"Tile", m_side}, {nullptr, m_flipped},
            {nullptr,
                label("The first tile is in the lower left corner. All of them stay upright when "
                      "the view is flipped.")}});
        settings->setAlignment(m_flipped, Qt::AlignLeft);
        auto* const pictures = new QVBoxLayout;
        pictures->addWidget(m_widget);
        arrange(*this, settings, pictures);
        m_side->onChange([this] { update(); });
        connect(m_flipped, &QCheckBox::toggled, this, [this] { update(); });
    }

    void setPicture(const kw::CGImageRef& picture) override {
        m_picture = std::make_shared<kw::NSImage>();
        m_picture->addRepresentation(kw::NSBitmapImageRep::initWithCGImage(picture));
        update();
    }

    void visit(Tour& tour) override {
        m_side->click(tour, ValueSlider::Side::left, "40 pixels wide");
        const QImage upright = shown();
        tour.expect("the pattern repeats each 40 × 30 points", "yes", [&] {
            const QSize size(m_widget->width() - 40, m_widget->height() - 30);
            const bool isRepeated =
                shown().copy(QRect({0, 0}, size)) == shown().copy(QRect({40, 30}, size));
            return QString(isRepeated ? "yes" : "no");
        });
        tour.takePicture("images-7-pattern");
        tour.click(*m_flipped);
        tour.expect("the pattern of a flipped view", "the same",
            [&] { return QString(shown() == upright ? "the same" : "another"); });
    }

private:
    void update() {
        const double side = m_side->value();
        m_view->image = kw::thumbForSize(*m_picture, {side, side}, true);
        m_view->isUpsideDown = m_flipped->isChecked();
        m_view->setNeedsDisplay();
    }
    QImage shown() const {
        QImage image(m_widget->size(), QImage::Format_RGB32);
        m_widget->render(&image);
        return image;
    }

    ValueSlider* m_side;
    QCheckBox* m_flipped;
    std::shared_ptr<PatternView> m_view;
    kw::qt::ViewWidget* m_widget;
    std::shared_ptr<kw::NSImage> m_picture;
};

} // namespace

ImageTab* makePatternTab() { return new PatternTab; }

} // namespace gallery
