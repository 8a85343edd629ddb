// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImageTabs.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/imaging/NSImage+Reflection.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>

#include <QCheckBox>

#include <algorithm>
#include <memory>

namespace gallery {

namespace {

/// Where an image of RGBA is not transparent, from the top.
QString rowsText(const kw::CGImage& image) {
    const auto isTransparent = [&](std::int64_t y) {
        for (std::int64_t x = 0; x < image.width(); ++x) {
            if (image.row(y)[4 * x + 3] != 0)
                return false;
        }
        return true;
    };
    std::int64_t first = 0;
    std::int64_t last = image.height();
    while (first < last && isTransparent(first))
        ++first;
    while (first < last && isTransparent(last - 1))
        --last;
    return first == last ? QString("none")
                         : QString("%1 to %2 of %3").arg(first).arg(last).arg(image.height());
}

class ReflectionTab final : public ImageTab {
public:
    ReflectionTab()
        : m_amount(new ValueSlider(
              {0, 100, 50, 25}, [](int value) { return QString("%1 %").arg(value); }))
        , m_flipped(new QCheckBox("Flipped picture"))
        , m_rows(label())
        , m_result(new ImageWidget({220, 200}, Ground::dark)) {
        auto* const settings =
            factsLayout({{"Amount", m_amount}, {"Rows", m_rows}, {nullptr, m_flipped},
                {nullptr,
                    label("The result is as large as the picture, and shown whole beneath it. "
                          "Within its band it gets stronger downward.")}});
        settings->setAlignment(m_flipped, Qt::AlignLeft);
        auto* const pictures = new QVBoxLayout;
        pictures->addWidget(m_result);
        arrange(*this, settings, pictures);
        m_amount->onChange([this] { update(); });
        connect(m_flipped, &QCheckBox::toggled, this, [this] { update(); });
    }

    void setPicture(const kw::CGImageRef& picture) override {
        m_picture = picture;
        update();
    }

    void visit(Tour& tour) override {
        const auto rows = [this] { return m_rows->text(); };
        tour.expect("reflection of a half", "1 to 150 of 300", rows);
        tour.takePicture("images-6-reflection");
        tour.click(*m_flipped);
        tour.expect("reflection, flipped", "151 to 300 of 300", rows);
        tour.click(*m_flipped);
        m_amount->click(tour, ValueSlider::Side::left, "25 %");
        m_amount->click(tour, ValueSlider::Side::left, "0 %");
        tour.expect("no reflection", "none", rows);
        m_amount->click(tour, ValueSlider::Side::right, "25 %");
    }

private:
    void update() {
        kw::NSImage image;
        image.addRepresentation(kw::NSBitmapImageRep::initWithCGImage(m_picture));
        image.setFlipped(m_flipped->isChecked());
        const auto reflection = kw::reflectedImageWithAmountReflected(
            image, static_cast<float>(m_amount->value()) / 100);
        const kw::CGImageRef pixels = reflection->CGImageForProposedRect({{}, reflection->size()});
        m_result->setImages({m_picture, pixels});
        m_rows->setText(pixels ? rowsText(*pixels) : "none");
    }

    ValueSlider* m_amount;
    QCheckBox* m_flipped;
    QLabel* m_rows;
    ImageWidget* m_result;
    kw::CGImageRef m_picture;
};

} // namespace

ImageTab* makeReflectionTab() { return new ReflectionTab; }

} // namespace gallery
