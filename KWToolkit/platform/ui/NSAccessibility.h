// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

namespace kw {

/// What a view is for assistive technology.
enum class NSAccessibilityRole {
    unknown, ///< nothing of its own: only the views in it are told
    group,
    staticText,
    textField,
    button,
    hotkeyField,
};

} // namespace kw
