// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSFont.h>
#include <KWToolkit/platform/graphics/NSParagraphStyle.h>
#include <KWToolkit/platform/graphics/NSShadow.h>

#include <optional>

namespace kw {

/// How text looks.
struct TextAttributes {
    NSFont font;
    NSColor color = NSColor::blackColor();
    std::optional<NSShadow> shadow = {}; ///< of the text alone, besides the context's own
    NSParagraphStyle paragraphStyle = {}; ///< of text in a rectangle
    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

} // namespace kw
