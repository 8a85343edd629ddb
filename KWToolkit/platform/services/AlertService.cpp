// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/AlertService.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

AlertService::~AlertService() = default;

int UnavailableAlertService::runModal(NSAlert& alert) {
    Platform::console().writeLine("No screen to ask on: " + alert.messageText());
    return 0;
}

} // namespace kw
