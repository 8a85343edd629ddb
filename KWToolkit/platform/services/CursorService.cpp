// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/CursorService.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

CursorService::~CursorService() = default;

void NSCursor::set() const { Platform::cursor().set(*this); }

} // namespace kw
