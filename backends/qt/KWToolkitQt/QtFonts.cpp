// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtFonts.h>

#include <KWToolkitQt/CacheKey.h>

#include <QGuiApplication>
#include <QPaintDevice>

#include <algorithm>
#include <compare>
#include <map>
#include <string>

namespace kw::qt {

namespace {

constexpr double pointsPerInch = 72;
constexpr double largestSize = 4096; // of what the glyphs' outlines can be scaled to
constexpr std::size_t mostFonts = 256;

struct Key {
    double size;
    int dotsPerInch;
    bool isBold;
    QFont::StyleStrategy strategy;
    std::string family;
    friend auto operator<=>(const Key&, const Key&) = default;
};

struct Cache {
    QFont base;
    std::map<Key, QFont> fonts;
};

QFont makeFont(const QFont& base, const Key& key) {
    QFont result = base;
    if (!key.family.empty())
        result.setFamily(QString::fromStdString(key.family));
    // Qt's own pixel sizes are whole numbers only.
    result.setPointSizeF(key.size * pointsPerInch / key.dotsPerInch);
    result.setBold(key.isBold);
    if (key.strategy != QFont::PreferDefault)
        result.setStyleStrategy(key.strategy);
    return result;
}

} // namespace

QFont toQFont(const NSFont& font, const QPaintDevice& device, QFont::StyleStrategy strategy) {
    auto& cache = ofApplication<Cache>();
    if (const QFont base = QGuiApplication::font();
        base != cache.base || cache.fonts.size() >= mostFonts)
        cache = {base, {}};
    const Key key {std::min(font.drawnSize(), largestSize), device.logicalDpiY(), font.isBold,
        strategy, font.family};
    const auto [found, isNew] = cache.fonts.try_emplace(key);
    if (isNew)
        found->second = makeFont(cache.base, key);
    return found->second;
}

QColor toQColor(const NSColor& color) {
    const auto rgb = color.colorUsingColorSpace(CGColorSpace::deviceRGB);
    if (!rgb)
        return Qt::transparent;
    return QColor::fromRgbF(static_cast<float>(rgb->redComponent()),
        static_cast<float>(rgb->greenComponent()), static_cast<float>(rgb->blueComponent()),
        static_cast<float>(rgb->alphaComponent()));
}

NSColor toNSColor(const QColor& color) {
    const QColor rgb = color.toRgb();
    return NSColor::colorWithDeviceRed(rgb.redF(), rgb.greenF(), rgb.blueF(), rgb.alphaF());
}

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString toDrawnText(std::string_view text) {
    return toQString(text)
        .remove(QChar(u'\0'))
        .replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QChar(QChar::LineSeparator), u'\n')
        .replace(QChar(QChar::ParagraphSeparator), u'\n');
}

} // namespace kw::qt
