// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

namespace kw {

/// Where the lines of a text lie between the edges of their rectangle.
enum NSTextAlignment {
    NSTextAlignmentLeft = 0,
    NSTextAlignmentRight = 1,
    NSTextAlignmentCenter = 2,
    NSTextAlignmentJustified = 3,
    NSTextAlignmentNatural = 4, ///< at the edge where the text's script begins
};

/// What becomes of a line that is wider than its rectangle.
enum NSLineBreakMode {
    NSLineBreakByWordWrapping = 0,
    NSLineBreakByCharWrapping = 1,
    NSLineBreakByClipping = 2,
    NSLineBreakByTruncatingHead = 3,
    NSLineBreakByTruncatingTail = 4,
    NSLineBreakByTruncatingMiddle = 5,
};

/// How the paragraphs of a text are set. A default one is the platform's.
struct NSParagraphStyle {
    NSTextAlignment alignment = NSTextAlignmentNatural;
    NSLineBreakMode lineBreakMode = NSLineBreakByWordWrapping;
    friend bool operator==(const NSParagraphStyle&, const NSParagraphStyle&) = default;
};

} // namespace kw
