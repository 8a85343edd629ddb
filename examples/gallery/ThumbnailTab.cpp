// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImageTabs.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/imaging/NSBitmapImageRep+Thumb.h>

#include <QAbstractButton>
#include <QCheckBox>

#include <array>
#include <memory>

namespace gallery {

namespace {

constexpr int enlargement = 4;

struct Interpolation {
    const char* title;
    kw::NSImageInterpolation value;
};
constexpr std::array interpolations {
    Interpolation {"None", kw::NSImageInterpolationNone},
    Interpolation {"Low", kw::NSImageInterpolationLow},
    Interpolation {"Medium", kw::NSImageInterpolationMedium},
    Interpolation {"High", kw::NSImageInterpolationHigh},
};

class ThumbnailTab final : public ImageTab {
public:
    ThumbnailTab()
        : m_width(new ValueSlider({8, 256, 128, 32}, &pixels))
        , m_height(new ValueSlider({8, 256, 128, 32}, &pixels))
        , m_alpha(new ValueSlider({0, 100, 100, 25}, [](int value) { return percent(value); }))
        , m_ratio(new QCheckBox("Preserve ratio"))
        , m_square(new QCheckBox("Keep square rect"))
        , m_antialias(new QCheckBox("Antialias"))
        , m_thumb(new ImageWidget({220, 130}))
        , m_size(caption())
        , m_enlarged(new ImageWidget({220, 120}, Ground::chequered, Excess::cutOff)) {
        auto* const interpolation = new QWidget;
        QStringList titles;
        for (const Interpolation& entry : interpolations)
            titles += entry.title;
        m_interpolation = choice(*interpolation, titles);
        m_interpolation->button(3)->setChecked(true);

        auto* const settings = new QVBoxLayout;
        settings->setSpacing(10);
        settings->addLayout(factsLayout({{"Width", m_width}, {"Height", m_height},
            {"Opacity", m_alpha}, {"Pixels", interpolation}}));
        for (QCheckBox* const box : {m_ratio, m_square, m_antialias}) {
            box->setChecked(box != m_square);
            settings->addWidget(box, 0, Qt::AlignLeft);
            connect(box, &QCheckBox::toggled, this, [this] { update(); });
        }
        auto* const pictures = new QVBoxLayout;
        pictures->addWidget(m_thumb, 1);
        pictures->addWidget(m_size, 0, Qt::AlignHCenter);
        pictures->addWidget(m_enlarged, 1);
        pictures->addWidget(caption("Enlarged four times"), 0, Qt::AlignHCenter);
        arrange(*this, settings, pictures);
        for (ValueSlider* const slider : {m_width, m_height, m_alpha})
            slider->onChange([this] { update(); });
        connect(m_interpolation, &QButtonGroup::idClicked, this, [this] { update(); });
    }

    void setPicture(const kw::CGImageRef& picture) override {
        m_picture = kw::NSBitmapImageRep::initWithCGImage(picture);
        update();
    }

    void visit(Tour& tour) override {
        const auto size = [this] { return m_size->text(); };
        tour.expect("thumbnail for 128 × 128", "128 × 96 pixels", size);
        tour.takePicture("images-2-thumbnail");
        m_width->click(tour, ValueSlider::Side::left, "96");
        tour.expect("thumbnail for 96 × 128", "96 × 72 pixels", size);
        tour.click(*m_interpolation->button(0));
        tour.click(*m_square);
        m_alpha->click(tour, ValueSlider::Side::left, "75 %");
        tour.expect("thumbnail, square rect kept", "96 × 128 pixels", size);
        tour.takePicture("images-3-thumbnail-square");
        tour.click(*m_square);
        tour.click(*m_ratio);
        tour.expect("thumbnail, ratio not preserved", "96 × 128 pixels", size);
    }

private:
    static QString pixels(int value) { return QString::number(value); }
    static QString percent(int value) { return QString("%1 %").arg(value); }

    void update() {
        const auto id = static_cast<std::size_t>(m_interpolation->checkedId());
        const kw::NSSize size {
            static_cast<double>(m_width->value()), static_cast<double>(m_height->value())};
        const auto thumb = kw::thumbForSize(*m_picture, size, m_ratio->isChecked(),
            m_square->isChecked(), interpolations.at(id).value, m_antialias->isChecked(), false,
            static_cast<float>(m_alpha->value()) / 100);
        const kw::CGImageRef image = thumb ? thumb->CGImage() : nullptr;
        m_thumb->setImages({image});
        m_size->setText(sizeText(image));
        m_enlarged->setImages(
            {image ? kw::kwCreateScaledCGImageFromCGImage(image, image->width() * enlargement,
                         image->height() * enlargement, false, false, false, 1,
                         kw::NSImageInterpolationNone)
                   : nullptr});
    }

    ValueSlider* m_width;
    ValueSlider* m_height;
    ValueSlider* m_alpha;
    QButtonGroup* m_interpolation;
    QCheckBox* m_ratio;
    QCheckBox* m_square;
    QCheckBox* m_antialias;
    ImageWidget* m_thumb;
    QLabel* m_size;
    ImageWidget* m_enlarged;
    std::shared_ptr<kw::NSBitmapImageRep> m_picture;
};

} // namespace

ImageTab* makeThumbnailTab() { return new ThumbnailTab; }

} // namespace gallery
