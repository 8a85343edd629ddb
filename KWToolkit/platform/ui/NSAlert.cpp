// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSAlert.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

int NSAlert::runModal() { return Platform::alerts().runModal(*this); }

} // namespace kw
