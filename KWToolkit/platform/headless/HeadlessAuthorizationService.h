// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/AuthorizationService.h>

#include <functional>

namespace kw {

/// Grants what a test says.
class KW_EXPORT HeadlessAuthorizationService final : public AuthorizationService {
public:
    std::unique_ptr<Authorization> create() override;

    bool isAvailable = true;
    AuthorizationStatus status = AuthorizationStatus::granted;
    /// What `wait` answers for a run; nothing where it answers nothing.
    std::function<std::optional<int>(const std::vector<std::string>& run)> run;
    bool starts = true;

    std::vector<std::uint32_t> askedFlags;
    std::vector<std::vector<std::string>> runs; ///< each begins with the program
    int living = 0; ///< authorizations that have not been given back
};

} // namespace kw
