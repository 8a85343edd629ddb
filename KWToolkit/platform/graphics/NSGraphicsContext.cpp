// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSGraphicsContext.h>

namespace kw {

NSGraphicsContext::~NSGraphicsContext() = default;

} // namespace kw
