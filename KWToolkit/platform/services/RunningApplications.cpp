// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/RunningApplications.h>

namespace kw {

RunningApplications::~RunningApplications() = default;

} // namespace kw
