// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ApplicationService.h>

namespace kw::qt {

/// The host's windows and its event loop are Qt's.
class QtApplicationService final : public ApplicationService {
public:
    /// Posts `NSApplicationWillTerminateNotification` where the host leaves `exec` for another
    /// reason than this service.
    static void watchQuit();

    /// Closes the windows one after the other, until one refuses.
    bool prepareToTerminate() override;
    void exit() override;
    bool isEnding() const override;
};

} // namespace kw::qt
