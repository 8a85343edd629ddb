// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/HotkeyService.h>

namespace kw {

HotkeyService::~HotkeyService() = default;

} // namespace kw
