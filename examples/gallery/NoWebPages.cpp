// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "WebPages.h"

namespace gallery {

void useWebPages() { }

} // namespace gallery
