// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/CALayer.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QWidget>

#include <memory>

namespace gallery {

class Tour;

/// Places layers by constraints, and lets them go there in their own time or at once.
class LayersPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    LayersPage();
    /// Changes the constraints to what is chosen.
    void place();
    void setAnimated(bool isAnimated);
    bool isMoving() const;
    void steps(Tour& tour);

    QButtonGroup* m_corner;
    QButtonGroup* m_side;
    QCheckBox* m_isAnimated;
    QCheckBox* m_reducesMotion;
    QLabel* m_status;

    const std::shared_ptr<kw::CALayer> m_root;
    const std::shared_ptr<kw::CALayer> m_badge;
    const std::shared_ptr<kw::CALayer> m_bar;
    const std::shared_ptr<int> m_life = std::make_shared<int>();
};

} // namespace gallery
