// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// What the host's framework does when the application ends. Used on the main thread.
class KW_EXPORT ApplicationService {
public:
    virtual ~ApplicationService();

    /// Asks the host's windows whether they may close. False where one refuses: the application
    /// goes on.
    virtual bool prepareToTerminate() = 0;

    /// Ends the application: the host's event loop returns, or the process exits where none runs.
    virtual void exit() = 0;

    /// Whether it has been told that it ends, and goes on only until its event loop returns.
    virtual bool isEnding() const { return false; }

    /// See `NSAppKitVersionNumber`.
    virtual double frameworkVersion() const { return 1138; }
};

/// Of a program without windows: exits the process, as `std::exit` does.
class KW_EXPORT ProcessApplicationService final : public ApplicationService {
public:
    bool prepareToTerminate() override { return true; }
    [[noreturn]] void exit() override;
};

} // namespace kw
