// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QWidget;

namespace gallery {

class Tour;

/// What the gallery shows of one facility.
struct Page {
    const char* title;
    std::function<QWidget*()> make;
    /// Uses the page, which is in front, as a visitor would. The widget is what `make` returned.
    std::function<void(Tour&, QWidget&)> visit;
};

} // namespace gallery
