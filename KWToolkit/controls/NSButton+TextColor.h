// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The color of a button's title.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/ui/NSButton.h>

#include <optional>

namespace kw {

/// The color of the title's first character: none where it has attributes but no color, the theme's
/// control text color where it has no attributes, or there is no title.
KW_EXPORT std::optional<NSColor> textColor(const NSButton& button);

/// Colors the whole title. None takes the color away.
KW_EXPORT void setTextColor(NSButton& button, const std::optional<NSColor>& color);

} // namespace kw
