// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ApplicationService.h>

namespace kw {

/// Counts how often the application would have ended.
class KW_EXPORT HeadlessApplicationService final : public ApplicationService {
public:
    bool prepareToTerminate() override { return !refuses; }
    void exit() override { ++exits; }
    bool isEnding() const override { return ending; }
    double frameworkVersion() const override { return version; }

    bool refuses = false;
    bool ending = false;
    int exits = 0;
    double version = 1138;
};

} // namespace kw
