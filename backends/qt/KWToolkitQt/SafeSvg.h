// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class QIODevice;

namespace kw::qt {

struct SafeSvg {
    QByteArray text; ///< empty where it is not well formed, or too much to be read
    /// How much there is to draw, each use of an element counted: about the bytes of its long
    /// paths and texts.
    qint64 work = 0;
};

/// Whether so many pixels of four bytes are granted by `QImageReader::allocationLimit`, as Qt's own
/// readers have it.
bool isWithinLimit(qint64 pixels);

/// A vector picture from anywhere, without what makes Qt read other files: processing instructions
/// and pictures in it that are not plain pixels in the text itself. Without dashes, too: one line
/// may have billions of them.
SafeSvg safeSvg(QIODevice& svg);

} // namespace kw::qt
