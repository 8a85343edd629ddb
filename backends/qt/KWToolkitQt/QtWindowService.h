// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/WindowService.h>

namespace kw::qt {

/// Makes top-level widgets. They do not keep the application running; without a QApplication there
/// are none.
class QtWindowService final : public WindowService {
public:
    std::unique_ptr<NativeWindow> makeWindow(NSWindow& window, NSRect contentRect) override;
};

} // namespace kw::qt
