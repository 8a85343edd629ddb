// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/Workspace.h>

namespace kw {

Workspace::~Workspace() = default;

} // namespace kw
