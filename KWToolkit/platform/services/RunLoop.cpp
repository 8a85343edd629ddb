// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/RunLoop.h>

namespace kw {

RunLoop::~RunLoop() = default;

} // namespace kw
