// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw::qt {

/// Shows every `WebView` in a `ViewWidget` by Qt WebEngine. Loading this library does it; a host
/// that uses nothing else of the library calls this so that the library is loaded at all.
///
/// Load it before the QApplication is made. The pages belong to the engine's default profile: what
/// the program changes in `WebPreferences` and `NSURLCache` holds for the host's own pages of that
/// profile, too.
KW_EXPORT void useQtWeb();

} // namespace kw::qt
