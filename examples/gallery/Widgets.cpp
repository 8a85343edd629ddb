// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "Widgets.h"

#include <QLineEdit>

#include <algorithm>

namespace gallery {

QLabel* label(const QString& text, double scale, bool isBold) {
    auto* const result = new QLabel(text);
    QFont font = result->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(isBold);
    result->setFont(font);
    result->setWordWrap(true);
    return result;
}

QVBoxLayout* pageLayout(QWidget& page, const QString& title) {
    auto* const layout = new QVBoxLayout(&page);
    layout->setContentsMargins(32, 24, 32, 24);
    layout->setSpacing(16);
    layout->addWidget(label(title, 1.8, true));
    return layout;
}

QGridLayout* factsLayout(const std::vector<std::pair<const char*, QWidget*>>& facts) {
    auto* const layout = new QGridLayout;
    layout->setHorizontalSpacing(20);
    layout->setVerticalSpacing(14);
    layout->setColumnStretch(1, 1);
    for (int row = 0; const auto& [caption, value] : facts) {
        if (!caption) {
            layout->addWidget(value, row++, 0, 1, 2);
            continue;
        }
        auto* const name = label(caption);
        name->setWordWrap(false);
        name->setForegroundRole(QPalette::PlaceholderText);
        // The text of a field begins below its frame.
        if (!qobject_cast<QLabel*>(value))
            name->setMinimumHeight(
                std::min(value->sizeHint().height(), QLineEdit().sizeHint().height()));
        layout->addWidget(name, row, 0, Qt::AlignRight | Qt::AlignTop);
        layout->addWidget(value, row++, 1, Qt::AlignTop);
    }
    return layout;
}

} // namespace gallery
