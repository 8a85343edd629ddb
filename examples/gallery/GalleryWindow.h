// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>
#include <QStackedWidget>
#include <QWidget>

namespace gallery {

class Tour;

/// The titles of the pages on the left, the page on the right.
class GalleryWindow final : public QWidget {
public:
    GalleryWindow();

    /// Visits each page in turn, or only the one with that title. False where there is none.
    bool visit(Tour& tour, const QString& only);

private:
    QListWidget* m_titles;
    QStackedWidget* m_pages;
};

} // namespace gallery
