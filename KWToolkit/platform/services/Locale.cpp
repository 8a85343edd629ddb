// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/Locale.h>

namespace kw {

Locale::~Locale() = default;

} // namespace kw
