// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/ApplicationService.h>

#include <cstdlib>

namespace kw {

ApplicationService::~ApplicationService() = default;

void ProcessApplicationService::exit() { std::exit(EXIT_SUCCESS); }

} // namespace kw
