// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSPanel.h>

namespace kw {

Class& NSPanel::classObject() {
    static auto& object = *new Class("NSPanel", NSWindow::classObject());
    return object;
}

} // namespace kw
