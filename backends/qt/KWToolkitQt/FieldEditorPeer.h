// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkitQt/ViewPeer.h>

namespace kw::qt {

/// Of an `NSTextView`: a line edit that shows nothing but its text, where a text field draws it.
std::unique_ptr<ViewPeer> makeFieldEditorPeer(NSView& view, QWidget& parent);

} // namespace kw::qt
