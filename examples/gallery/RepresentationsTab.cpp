// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImageTabs.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/imaging/NSBitmapImageRep+Thumb.h>
#include <KWToolkit/imaging/NSImage+BestRepresentationForSize.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>
#include <KWToolkit/platform/graphics/NSImage.h>

#include <array>
#include <cmath>
#include <memory>
#include <optional>

namespace gallery {

namespace {

constexpr std::array sides {32.0, 128.0, 512.0};

/// How far a representation is from the size, as the choice counts it.
QString scoreText(const kw::NSImageRep& representation, int wanted) {
    const double ratio = representation.size().width / wanted;
    return QString("score %1").arg(2 * std::fabs(1 - ratio), 0, 'f', 2);
}

class RepresentationsTab final : public ImageTab {
public:
    RepresentationsTab()
        : m_size(new ValueSlider(
              {1, 640, 150, 50}, [](int side) { return sizeText(side, side, "points"); })) {
        auto* const layout = new QVBoxLayout(this);
        layout->setSpacing(10);
        layout->addLayout(factsLayout({{"Wanted size", m_size}}));
        layout->addWidget(label("The framed one is chosen: its score is the least."));
        auto* const cards = new QHBoxLayout;
        for (Card& card : m_cards) {
            card = {new ImageWidget({136, 136}), caption({}, true), caption()};
            auto* const column = new QVBoxLayout;
            column->setSpacing(4);
            column->addWidget(card.picture, 1);
            column->addWidget(card.title, 0, Qt::AlignHCenter);
            column->addWidget(card.score, 0, Qt::AlignHCenter);
            cards->addLayout(column, 1);
        }
        layout->addLayout(cards, 1);
        m_size->onChange([this] { update(); });
    }

    void setPicture(const kw::CGImageRef& picture) override {
        const auto bitmap = kw::NSBitmapImageRep::initWithCGImage(picture);
        m_image = std::make_shared<kw::NSImage>();
        for (const double side : sides)
            m_image->addRepresentation(kw::squareThumbForSize(*bitmap, {side, side}, true));
        update();
    }

    void visit(Tour& tour) override {
        const auto chosen = [this] { return m_chosen; };
        const auto scores = [this] {
            QStringList texts;
            for (const Card& card : m_cards)
                texts += card.score->text();
            return texts.join(", ");
        };
        m_size->click(tour, ValueSlider::Side::left, "100 × 100 points");
        tour.expect("scores", "score 1.36, score 0.56, score 8.24", scores);
        tour.expect("representation for 100 × 100", "128 × 128 points", chosen);
        tour.takePicture("images-1-representations");
        m_size->click(tour, ValueSlider::Side::left, "50 × 50 points");
        tour.expect("representation for 50 × 50", "32 × 32 points", chosen);
    }

private:
    struct Card {
        ImageWidget* picture;
        QLabel* title;
        QLabel* score;
    };

    void update() {
        const double wanted = m_size->value();
        const auto best = kw::bestRepresentationForSize(*m_image, {wanted, wanted});
        for (std::size_t i = 0; i < m_image->representations().size(); ++i) {
            const auto& representation = m_image->representations().at(i);
            const kw::NSSize size = representation->size();
            const Card& card = m_cards.at(i);
            card.picture->setImages(
                {static_cast<kw::NSBitmapImageRep&>(*representation).CGImage()});
            card.picture->setMarked(representation == best);
            card.title->setText(sizeText(size.width, size.height, "points"));
            card.score->setText(scoreText(*representation, m_size->value()));
            if (representation == best)
                m_chosen = card.title->text();
        }
    }

    ValueSlider* m_size;
    std::array<Card, sides.size()> m_cards {};
    std::shared_ptr<kw::NSImage> m_image;
    QString m_chosen;
};

} // namespace

ImageTab* makeRepresentationsTab() { return new RepresentationsTab; }

} // namespace gallery
