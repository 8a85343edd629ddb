// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/AlertService.h>

#include <functional>
#include <vector>

namespace kw {

/// Answers as a test says.
class KW_EXPORT HeadlessAlertService final : public AlertService {
public:
    int runModal(NSAlert& alert) override {
        const int response = answer ? answer(alert) : 0;
        shown.push_back(alert);
        return response;
    }

    std::function<int(NSAlert& alert)> answer; ///< may set the checkbox
    std::vector<NSAlert> shown; ///< as they were left
};

} // namespace kw
