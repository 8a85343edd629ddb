// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Texts, fonts and colors as Qt has them. Main thread.
#pragma once

#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSFont.h>

#include <QColor>
#include <QFont>
#include <QString>

#include <string_view>

class QPaintDevice;

namespace kw::qt {

/// A font that is as many of the device's units high as the description has points. Found quickly:
/// it is kept until the application's font changes.
QFont toQFont(const NSFont& font, const QPaintDevice& device,
    QFont::StyleStrategy strategy = QFont::PreferDefault);

/// Transparent for a pattern.
QColor toQColor(const NSColor& color);
NSColor toNSColor(const QColor& color);

/// What is not UTF-8 becomes U+FFFD.
QString toQString(std::string_view text);

/// The text without U+0000, which would be drawn as an empty box: it is the letter of a key that a
/// keyboard layout does not know. Any kind of line end becomes a line feed.
QString toDrawnText(std::string_view text);

} // namespace kw::qt
