// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/WebService.h>

namespace kw {

WebService::~WebService() = default;

} // namespace kw
