// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ViewLoader.h>

namespace kw::qt {

/// Reads layout files of Qt Designer: `<folder>/<name>.ui`. Without a QApplication there are none.
///
/// A widget of a class that is registered for layout files (a promoted widget in Designer) becomes
/// that view at its place, and what lies in it the view's subviews. Any other widget becomes a
/// `WidgetView` with all that lies in it, where views are shown by `ViewWidget`s. Object names
/// become identifiers, accessible names labels.
///
/// A view is given the properties that the file adds to its widget by their names, if its class has
/// such: texts, numbers, truth values, colors, fonts, points, sizes and rectangles. Sizes of fonts
/// are as Designer shows them. What does not fit is written to `Platform::console()`.
///
/// Plugins are not loaded for a file, and it holds no code. What Designer can have it do (connect
/// the signals and slots of its widgets, show pictures by path) it can: load only files that come
/// with the host.
class QtViewLoader final : public ViewLoader {
public:
    std::shared_ptr<NSView> loadView(
        const std::string& name, const std::string& folder, std::string& reason) override;
};

} // namespace kw::qt
