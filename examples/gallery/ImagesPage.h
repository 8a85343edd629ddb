// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/CGImage.h>

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QThreadPool>
#include <QWidget>

namespace gallery {

class Tour;

/// Shows what the toolkit does with a picture: one of its own, or one from a file.
class ImagesPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    ImagesPage();
    void setPicture(const kw::CGImageRef& picture);
    void chooseFile();
    /// Reads a file without holding up the window.
    void open(const QString& path);
    void steps(Tour& tour);

    QLabel* m_status;
    QPushButton* m_open;
    QPushButton* m_generated;
    QTabWidget* m_tabs;
    QThreadPool m_reader; // Waits for its work before the page goes.
};

} // namespace gallery
