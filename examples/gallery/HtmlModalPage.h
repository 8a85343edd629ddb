// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QTemporaryDir>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

class QPushButton;

namespace gallery {

class Tour;

/// Asks with web pages of all kinds.
class HtmlModalPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    class Links;

    HtmlModalPage();
    ~HtmlModalPage() override;
    void writePages();
    /// Asks with a file of the folder, or with no page at all where the name is empty.
    void ask(const std::string& fileName);
    void steps(Tour& tour);

    const QTemporaryDir m_folder;
    std::vector<QPushButton*> m_cases; ///< as they are listed
    QLabel* m_answer;
    QLabel* m_buttons;
    QLabel* m_link;
    QLabel* m_settings;
    const std::shared_ptr<Links> m_links;
};

} // namespace gallery
