// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkitQt/ViewPeer.h>

#include <memory>

namespace kw::qt {

/// The view must be a `WebView`.
std::unique_ptr<ViewPeer> makeWebViewPeer(NSView& view, QWidget& parent);

} // namespace kw::qt
