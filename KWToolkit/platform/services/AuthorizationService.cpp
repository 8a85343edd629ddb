// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/AuthorizationService.h>

namespace kw {

Authorization::~Authorization() = default;
AuthorizationService::~AuthorizationService() = default;

} // namespace kw
