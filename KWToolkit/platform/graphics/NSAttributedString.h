// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSFont.h>
#include <KWToolkit/platform/graphics/NSParagraphStyle.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kw {

/// A part of a text, in bytes of its UTF-8 form.
struct NSRange {
    std::size_t location = 0;
    std::size_t length = 0;
    friend bool operator==(const NSRange&, const NSRange&) = default;
};

/// A text with attributes on parts of it. What is absent is left to whoever shows the text.
class KW_EXPORT NSAttributedString {
public:
    struct Attributes {
        std::optional<NSFont> font;
        std::optional<NSColor> foregroundColor;
        std::optional<NSParagraphStyle> paragraphStyle;
        bool isEmpty() const { return *this == Attributes {}; }
        friend bool operator==(const Attributes&, const Attributes&) = default;
    };
    /// A part whose attributes are the same throughout.
    struct Run {
        NSRange range;
        Attributes attributes;
        friend bool operator==(const Run&, const Run&) = default;
    };

    NSAttributedString() = default;
    explicit NSAttributedString(std::string string, Attributes attributes = {});

    const std::string& string() const { return m_string; }
    std::size_t length() const { return m_string.size(); }
    NSRange wholeRange() const { return {0, length()}; }
    /// In order and without gaps; neighbors differ. An empty text has none.
    const std::vector<Run>& runs() const { return m_runs; }
    /// None behind the text's end.
    Attributes attributesAtIndex(std::size_t index) const;

    void appendAttributedString(const NSAttributedString& string);
    /// What of a range lies behind the text is ignored. A bound within a character moves to its
    /// beginning.
    void setAttributes(const Attributes& attributes, NSRange range);
    void setForegroundColor(const std::optional<NSColor>& color, NSRange range);
    /// Makes the attributes fit the text: a paragraph of which a part is in the range has one
    /// paragraph style, its first character's. Fonts stay; whoever draws finds one for what a font
    /// lacks.
    void fixAttributesInRange(NSRange range);

    friend bool operator==(const NSAttributedString&, const NSAttributedString&) = default;

private:
    template <class Change>
    void change(NSRange range, const Change& change);
    void join();

    std::string m_string;
    std::vector<Run> m_runs;
};

} // namespace kw
