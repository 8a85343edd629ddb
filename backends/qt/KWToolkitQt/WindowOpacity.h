// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/NSWindow.h>

class QWidget;

namespace kw::qt {

/// From 0 to 1. Where nobody blends windows, the top-level widget's content is faded into the
/// window color, by a graphics effect that is there as long as it is not 1. An effect of the host's
/// stays as it is; so do widgets that OpenGL paints.
void setOpacity(QWidget& topLevel, double opacity);
NSWindowOpacity opacityOf(const QWidget& topLevel);

} // namespace kw::qt
