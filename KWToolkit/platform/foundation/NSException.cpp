// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSException.h>

namespace kw {

NSException::~NSException() = default;

} // namespace kw
