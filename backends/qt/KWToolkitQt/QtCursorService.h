// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/CursorService.h>

class QWidget;

namespace kw::qt {

/// Gives the pointer its shape over the widget of views that the mouse is in.
class QtCursorService final : public CursorService {
public:
    void set(NSCursor cursor) override;

    static void mouseEntered(QWidget& views);
    static void mouseLeft(QWidget& views);
};

} // namespace kw::qt
