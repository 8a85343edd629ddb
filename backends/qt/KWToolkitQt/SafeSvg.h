// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class QIODevice;

namespace kw::qt {

/// A vector picture from anywhere, without what makes Qt read other files: processing instructions
/// and pictures in it that are not plain pixels in the text itself. Empty where it is not well
/// formed, or could take too much time, memory or stack to draw.
QByteArray safeSvg(QIODevice& svg);

} // namespace kw::qt
