// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/TextLayout.h>

#include <KWToolkitQt/CacheKey.h>
#include <KWToolkitQt/QtFonts.h>

#include <QCache>
#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <array>

namespace kw::qt {

namespace {

constexpr double widestLine = 1 << 24; // that Qt's fixed point can hold, with room to add
constexpr int keptText = 1 << 18; // in bytes of UTF-8 and of what keeping each text costs
constexpr int costOfText = 64;

struct Kept {
    QCache<QString, std::shared_ptr<const TextLayout>> layouts {keptText};
};

struct LineBreaking {
    QTextOption::WrapMode wrapping;
    Qt::TextElideMode elision;
};

const LineBreaking& lineBreaking(NSLineBreakMode mode) {
    static constexpr std::array<LineBreaking, 6> table {{
        {QTextOption::WrapAtWordBoundaryOrAnywhere, Qt::ElideNone},
        {QTextOption::WrapAnywhere, Qt::ElideNone},
        {QTextOption::NoWrap, Qt::ElideNone},
        {QTextOption::NoWrap, Qt::ElideLeft},
        {QTextOption::NoWrap, Qt::ElideRight},
        {QTextOption::NoWrap, Qt::ElideMiddle},
    }};
    const auto index = static_cast<std::size_t>(mode);
    return table[index < table.size() ? index : 0];
}

/// How much of the space beside a line lies left of it.
double shareOnTheLeft(NSTextAlignment alignment, bool isRightToLeft) {
    switch (alignment) {
    case NSTextAlignmentLeft:
        return 0;
    case NSTextAlignmentRight:
        return 1;
    case NSTextAlignmentCenter:
        return 0.5;
    case NSTextAlignmentJustified:
    case NSTextAlignmentNatural:
        break;
    }
    return isRightToLeft ? 1 : 0;
}

} // namespace

TextLayout::TextLayout(QString key, std::string_view text, const QFont& font,
    const QPaintDevice& device, const std::optional<TextBox>& box)
    : m_key(std::move(key))
    , m_font(font) {
    const QFontMetricsF metrics(font, &device);
    m_ascent = metrics.ascent();
    m_lineHeight = metrics.height();
    const QStringList paragraphs = toDrawnText(text).split(u'\n');
    if (!box)
        setWithoutBox(paragraphs, device);
    else if (box->size.width > 0)
        setInBox(paragraphs, device, *box);
}

TextLayout::~TextLayout() = default;

void TextLayout::setWithoutBox(const QStringList& paragraphs, const QPaintDevice& device) {
    for (const QString& text : paragraphs) {
        QTextLayout& paragraph = addParagraph(text, device);
        paragraph.beginLayout();
        addLine(paragraph, widestLine, NSTextAlignmentLeft);
        paragraph.endLayout();
    }
}

void TextLayout::setInBox(
    const QStringList& paragraphs, const QPaintDevice& device, const TextBox& box) {
    const LineBreaking& breaking = lineBreaking(box.style.lineBreakMode);
    const bool isWrapped = breaking.wrapping != QTextOption::NoWrap;
    const bool isElided = breaking.elision != Qt::ElideNone;
    const double width = std::min(box.size.width, widestLine);
    if (!isWrapped && !isElided)
        m_clippedAt = box.size.width;
    const QFontMetricsF metrics(m_font, &device);
    const auto isFull = [&] {
        return m_bounds.height() > 0 && !(m_bounds.bottom() < box.size.height);
    };
    for (const QString& text : paragraphs) {
        if (isFull())
            return;
        QTextLayout& paragraph = addParagraph(
            isElided ? metrics.elidedText(text, breaking.elision, width) : text, device);
        QTextOption option = paragraph.textOption();
        if (isWrapped) {
            option.setFlags({});
            option.setWrapMode(breaking.wrapping);
            if (box.style.alignment == NSTextAlignmentJustified)
                option.setAlignment(Qt::AlignJustify);
            paragraph.setTextOption(option);
        }
        paragraph.beginLayout();
        while (addLine(paragraph, width, box.style.alignment) && isWrapped && !isFull()) { }
        paragraph.endLayout();
    }
}

QTextLayout& TextLayout::addParagraph(const QString& text, const QPaintDevice& device) {
    auto& paragraph =
        *m_paragraphs.emplace_back(std::make_unique<QTextLayout>(text, m_font, &device));
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::NoWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    paragraph.setTextOption(option);
    paragraph.setCacheEnabled(true);
    return paragraph;
}

bool TextLayout::addLine(QTextLayout& paragraph, double width, NSTextAlignment alignment) {
    QTextLine line = paragraph.createLine();
    if (!line.isValid())
        return false;
    line.setLineWidth(width);
    const bool isJustified = paragraph.textOption().alignment() == Qt::AlignJustify;
    const double space = width - line.naturalTextWidth();
    const bool isRightToLeft = paragraph.text().isRightToLeft();
    // Of what is too wide its beginning is seen.
    const double share =
        shareOnTheLeft(space < 0 ? NSTextAlignmentNatural : alignment, isRightToLeft);
    const double left = isJustified ? 0 : space * share;
    const double top = m_bounds.bottom();
    line.setPosition({left, top + m_ascent - line.ascent()});
    m_bounds |= QRectF(left, top, isJustified ? width : line.naturalTextWidth(), m_lineHeight);
    return true;
}

QRectF TextLayout::reach() const {
    const double room = m_lineHeight / 2;
    return m_bounds.adjusted(-room, -room, room, room);
}

void TextLayout::draw(QPainter& painter) const {
    const bool isClipped =
        m_clippedAt > 0 && (m_bounds.left() < 0 || m_bounds.right() > m_clippedAt);
    if (isClipped) {
        painter.save();
        painter.setClipRect(
            QRectF(0, reach().top(), m_clippedAt, reach().height()), Qt::IntersectClip);
    }
    for (const auto& paragraph : m_paragraphs)
        paragraph->draw(&painter, {});
    if (isClipped)
        painter.restore();
}

std::shared_ptr<const TextLayout> textLayout(std::string_view text, const NSFont& font,
    QFont::StyleStrategy strategy, const QPaintDevice& device, const std::optional<TextBox>& box) {
    CacheKey key;
    key << text << std::string_view(font.family) << font.size << font.isBold << strategy
        << device.logicalDpiY();
    if (box)
        key << box->size.width << box->size.height << box->style.alignment
            << box->style.lineBreakMode;
    auto& kept = ofApplication<Kept>().layouts;
    const QFont wanted = toQFont(font, device, strategy);
    const auto* const found = kept.object(key.text());
    // The same description may be another font by now.
    if (found && (*found)->font() == wanted)
        return *found;
    auto layout = std::make_shared<const TextLayout>(key.text(), text, wanted, device, box);
    kept.insert(
        key.text(), new std::shared_ptr(layout), static_cast<qsizetype>(text.size()) + costOfText);
    return layout;
}

} // namespace kw::qt
