// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

/// A window that assists another, such as one with tools. Main thread.
class KW_EXPORT NSPanel : public NSWindow {
public:
    using NSWindow::NSWindow;

    static Class& classObject();
    Class& isa() const override { return classObject(); }
};

} // namespace kw
