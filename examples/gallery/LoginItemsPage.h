// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWidget>

#include <system_error>

namespace gallery {

class Tour;

/// Shows the user's login items and makes the gallery one.
class LoginItemsPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    LoginItemsPage();
    /// Shows what there is now, or what went wrong.
    void showItems(const std::error_code& error = {});
    void steps(Tour& tour);

    QLabel* m_launch;
    QLabel* m_status;
    QPlainTextEdit* m_items;
    QCheckBox* m_hidden;
    QPushButton* m_add;
    QPushButton* m_remove;
};

} // namespace gallery
