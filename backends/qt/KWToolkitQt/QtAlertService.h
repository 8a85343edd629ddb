// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/AlertService.h>

namespace kw::qt {

/// Shows a message box, above the active window if there is one, also before the host's event loop
/// runs. Texts are shown as they are, without markup or mnemonics. Closing the box and Escape
/// choose no button. Without a QApplication it is the `UnavailableAlertService`.
class QtAlertService final : public AlertService {
public:
    int runModal(NSAlert& alert) override;
};

} // namespace kw::qt
