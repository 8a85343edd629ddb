// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <system_error>

namespace kw {

/// Lets links such as "<scheme>://open" start the host, or reach it where it runs: in the user's
/// folder writes or updates the desktop entry `<identifier>.desktop`, whose Exec starts the host
/// with the URL (an AppImage by its own path), and makes it a handler of the scheme, the default
/// one unless the user has chosen another (mimeapps.list; Desktop Entry Specification 1.5,
/// Association between MIME types and applications 1.0.1). Other keys of these files stay as they
/// are; an entry that is installed for all users is copied first.
///
/// A host calls it at each start, since it may have been moved. `std::errc::invalid_argument` for
/// what is no scheme (RFC 3986, section 3.1; case does not matter) or no identifier for a file
/// name.
KW_EXPORT std::error_code installUrlScheme(const std::string& scheme);

/// Takes that back. The entry itself goes where nothing but such calls made it.
KW_EXPORT std::error_code removeUrlScheme(const std::string& scheme);

} // namespace kw
