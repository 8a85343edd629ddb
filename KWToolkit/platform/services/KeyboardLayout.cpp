// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/KeyboardLayout.h>

namespace kw {

KeyboardLayout::~KeyboardLayout() = default;

} // namespace kw
