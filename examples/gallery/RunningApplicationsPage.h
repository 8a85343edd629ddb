// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTableWidget>
#include <QTimer>
#include <QWidget>

namespace gallery {

class Tour;

/// Shows the applications that run, which of them was active before the gallery, and a relaunch.
class RunningApplicationsPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    RunningApplicationsPage();
    void update();
    QStringList names() const;
    void steps(Tour& tour);

    QTableWidget* m_list;
    QLabel* m_previous;
    QPushButton* m_relaunch;
    QTimer m_timer;
};

} // namespace gallery
