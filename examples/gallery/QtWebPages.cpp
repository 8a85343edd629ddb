// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "WebPages.h"

#include <KWToolkitQtWeb/QtWeb.h>

namespace gallery {

void useWebPages() { kw::qt::useQtWeb(); }

} // namespace gallery
