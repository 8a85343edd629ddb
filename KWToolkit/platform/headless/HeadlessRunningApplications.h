// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/RunningApplications.h>

namespace kw {

/// The applications that a test says.
class KW_EXPORT HeadlessRunningApplications final : public RunningApplications {
public:
    std::optional<std::vector<RunningApplication>> frontToBack() override { return applications; }

    std::optional<std::vector<RunningApplication>> applications;
};

} // namespace kw
