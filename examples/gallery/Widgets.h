// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What the pages are put together from.
#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QString>
#include <QVBoxLayout>

#include <utility>
#include <vector>

namespace gallery {

QLabel* label(const QString& text = {}, double scale = 1, bool isBold = false);

/// The page's own layout, with its title at the top.
QVBoxLayout* pageLayout(QWidget& page, const QString& title);

/// Captions on the left, what they name on the right. What has a null caption gets the whole width.
QGridLayout* factsLayout(const std::vector<std::pair<const char*, QWidget*>>& facts);

} // namespace gallery
