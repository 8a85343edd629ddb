// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkitQt/ViewPeer.h>

namespace kw::qt {

/// Of an `NSButton`: a push button.
std::unique_ptr<ViewPeer> makeButtonPeer(NSView& view, QWidget& parent);

} // namespace kw::qt
