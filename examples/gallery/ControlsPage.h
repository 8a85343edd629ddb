// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ImageWidgets.h"

#include <QButtonGroup>
#include <QPalette>
#include <QWidget>

#include <memory>

namespace gallery {

class ControlsPanel;
class Tour;

/// Every control in every state, on a light or a dark theme.
class ControlsPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    ControlsPage();
    ~ControlsPage() override;
    void steps(Tour& tour);
    void takePictures(Tour& tour, const QString& theme);

    const std::shared_ptr<ControlsPanel> m_panel;
    kw::qt::ViewWidget* m_screen;
    QButtonGroup* m_theme;
    ValueSlider* m_count;
    const QPalette m_before;
};

} // namespace gallery
