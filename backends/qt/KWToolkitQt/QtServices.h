// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw::qt {

/// Lets the toolkit's services run in Qt's event loop, shows its alerts as message boxes, decodes
/// pictures with Qt's plugins, and terminates the host by closing its windows and leaving the loop.
/// Loading this library does it; a host that uses nothing else of the library calls this so that
/// the library is loaded at all.
///
/// Make the QApplication before the first use of a service. What a callback throws is written to
/// `Platform::console()`, for Qt cannot let exceptions through.
KW_EXPORT void useQtServices();

} // namespace kw::qt
