// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSFont.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSParagraphStyle.h>

#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

class QPainter;
class QPaintDevice;
class QTextLayout;

namespace kw::qt {

/// Where text is set in lines.
struct TextBox {
    NSSize size;
    NSParagraphStyle style;
    friend bool operator==(const TextBox&, const TextBox&) = default;
};

/// A text whose glyphs have been found and placed. Coordinates have their origin at the upper left
/// corner of the text, or of its box, and y downward.
class TextLayout {
public:
    /// Without a box each line is on a line of its own, from 0 on.
    TextLayout(QString key, std::string_view text, const QFont& font, const QPaintDevice& device,
        const std::optional<TextBox>& box);
    ~TextLayout();

    /// What the lines cover, by the measures of the font itself, whatever fonts stand in for it.
    const QRectF& bounds() const { return m_bounds; }
    /// The bounds with room for what slanted and other fonts' glyphs put outside.
    QRectF reach() const;
    /// From the painter's origin on, in its pen.
    void draw(QPainter& painter) const;
    const QFont& font() const { return m_font; }
    /// What it was looked up by.
    const QString& key() const { return m_key; }

private:
    void setWithoutBox(const QStringList& paragraphs, const QPaintDevice& device);
    void setInBox(const QStringList& paragraphs, const QPaintDevice& device, const TextBox& box);
    QTextLayout& addParagraph(const QString& text, const QPaintDevice& device);
    bool addLine(QTextLayout& paragraph, double width, NSTextAlignment alignment);

    QString m_key;
    QFont m_font;
    double m_ascent;
    double m_lineHeight;
    QRectF m_bounds;
    double m_clippedAt = 0; // the box's width where it cuts lines off
    std::vector<std::unique_ptr<QTextLayout>> m_paragraphs;
};

/// Kept, as views draw the same texts again and again. Main thread.
std::shared_ptr<const TextLayout> textLayout(std::string_view text, const NSFont& font,
    QFont::StyleStrategy strategy, const QPaintDevice& device,
    const std::optional<TextBox>& box = {});

} // namespace kw::qt
