// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <memory>

namespace gallery {

class Tour;

/// Lets an application that was just downloaded move itself, in a home folder made for it.
class MovePage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    MovePage();
    void startOver();
    void start();
    void look();
    void steps(Tour& tour);

    std::unique_ptr<QTemporaryDir> m_home;
    QTimer m_lookout; ///< runs while the page is shown
    QCheckBox* m_hasFolder;
    QPushButton* m_start;
    QPushButton* m_startOver;
    QLabel* m_files;
    QPlainTextEdit* m_events;

protected:
    void showEvent(QShowEvent*) override;
    void hideEvent(QHideEvent*) override { m_lookout.stop(); }
};

} // namespace gallery
