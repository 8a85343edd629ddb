// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImageTabs.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>

#include <QAbstractButton>

#include <array>
#include <cmath>
#include <memory>

namespace gallery {

namespace {

struct Table {
    const char* title;
    kw::GammaTable values;
};

template <typename Value>
constexpr kw::GammaTable tableOf(Value value) {
    kw::GammaTable table {};
    for (std::uint32_t i = 0; i < table.size(); ++i)
        table[i] = value(i);
    return table;
}

constexpr std::array tables {
    Table {"Inverting", tableOf([](std::uint32_t i) { return 32768 - 128 * i; })},
    Table {"Posterizing", tableOf([](std::uint32_t i) { return i / 64 * 32768 / 3; })},
};

/// The colors of a pixel in the left half, as bytes.
QString pixelText(const kw::NSBitmapImageRep& bitmap) {
    const kw::NSColor color = bitmap.colorAt(bitmap.pixelsWide() / 8, bitmap.pixelsHigh() / 2)
                                  .value_or(kw::NSColor::colorWithDeviceRed(0, 0, 0, 0));
    const auto byte = [](double component) { return std::lround(component * 255); };
    return QString("%1, %2, %3")
        .arg(byte(color.redComponent()))
        .arg(byte(color.greenComponent()))
        .arg(byte(color.blueComponent()));
}

class GammaTab final : public ImageTab {
public:
    GammaTab()
        : m_value(new ValueSlider(
              {0, 400, 100, 100}, [](int value) { return QString::number(value / 100.0, 'f', 2); }))
        , m_pixel(label())
        , m_before(new ImageWidget({220, 120}))
        , m_after(new ImageWidget({220, 120})) {
        auto* const table = new QWidget;
        m_table = choice(*table, {"None", tables[0].title, tables[1].title});
        auto* const pictures = new QVBoxLayout;
        pictures->addWidget(m_before, 1);
        pictures->addWidget(caption("Before"), 0, Qt::AlignHCenter);
        pictures->addWidget(m_after, 1);
        pictures->addWidget(caption("After"), 0, Qt::AlignHCenter);
        arrange(*this, factsLayout({{"Gamma", m_value}, {"Table", table}, {"A pixel", m_pixel}}),
            pictures);
        m_value->onChange([this] { update(); });
        connect(m_table, &QButtonGroup::idClicked, this, [this] { update(); });
    }

    void setPicture(const kw::CGImageRef& picture) override {
        m_picture = picture;
        m_before->setImages({picture});
        update();
    }

    void visit(Tour& tour) override {
        const auto pixel = [this] { return m_pixel->text(); };
        tour.expect("pixel, gamma 1", "200, 100, 50\n200, 100, 50", pixel);
        m_value->click(tour, ValueSlider::Side::right, "2.00");
        tour.expect("pixel, gamma 2", "200, 100, 50\n157, 39, 10", pixel);
        tour.takePicture("images-4-gamma");
        tour.click(*m_table->button(1));
        tour.expect("pixel, inverted", "200, 100, 50\n56, 155, 205", pixel);
        tour.click(*m_table->button(2));
        tour.expect("pixel, posterized", "200, 100, 50\n255, 85, 0", pixel);
        tour.takePicture("images-5-gamma-table");
    }

private:
    void update() {
        const auto bitmap = kw::NSBitmapImageRep::initWithCGImage(m_picture);
        const QString before = pixelText(*bitmap);
        const int id = m_table->checkedId();
        m_value->setEnabled(id == 0);
        kw::adjustGammaWithValue(*bitmap, static_cast<float>(m_value->value()) / 100,
            id == 0 ? nullptr : &tables.at(static_cast<std::size_t>(id - 1)).values);
        m_after->setImages({bitmap->CGImage()});
        m_pixel->setText(before + '\n' + pixelText(*bitmap));
    }

    ValueSlider* m_value;
    QButtonGroup* m_table;
    QLabel* m_pixel;
    ImageWidget* m_before;
    ImageWidget* m_after;
    kw::CGImageRef m_picture;
};

} // namespace

ImageTab* makeGammaTab() { return new GammaTab; }

} // namespace gallery
