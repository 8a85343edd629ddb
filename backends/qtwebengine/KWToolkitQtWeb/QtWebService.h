// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/WebService.h>

namespace kw::qt {

/// Keeps the engine's default profile as `WebPreferences` and `NSURLCache` say, once these differ
/// from what they are at first.
class QtWebService final : public WebService {
public:
    bool isAvailable() const override { return true; }
    void settingsChanged() override;

    /// What was changed before there was an application.
    static void applySettings();
};

} // namespace kw::qt
