// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ProcessService.h>

namespace kw {

/// Keeps in mind what would have been started.
class KW_EXPORT HeadlessProcessService final : public ProcessService {
public:
    int processIdentifier() const override { return identifier; }
    std::error_code launch(
        const std::string& program, const std::vector<std::string>& arguments) override {
        launched.push_back({program});
        launched.back().insert(launched.back().end(), arguments.begin(), arguments.end());
        return {};
    }

    int identifier = 42;
    std::vector<std::vector<std::string>> launched; ///< each begins with the program
};

} // namespace kw
