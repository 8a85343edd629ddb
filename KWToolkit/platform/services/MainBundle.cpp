// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/MainBundle.h>

namespace kw {

MainBundle::~MainBundle() = default;

} // namespace kw
