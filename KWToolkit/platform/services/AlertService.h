// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSAlert.h>

namespace kw {

/// Shows alerts. Used on the main thread.
class KW_EXPORT AlertService {
public:
    virtual ~AlertService();
    /// Shows the alert until the user answers; see `NSAlert::runModal`. Leaves in the alert whether
    /// the checkbox is on.
    virtual int runModal(NSAlert& alert) = 0;
};

/// Has no screen: writes the message to the console, and nobody answers.
class KW_EXPORT UnavailableAlertService final : public AlertService {
public:
    int runModal(NSAlert& alert) override;
};

} // namespace kw
