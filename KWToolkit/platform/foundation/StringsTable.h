// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <map>
#include <string>
#include <string_view>

namespace kw {

using StringsTable = std::map<std::string, std::string>;

/// Reads a table of localized texts: UTF-8 entries `"key" = "text";` between which there may be C
/// comments. Of two entries for a key the later holds. Within quotes \\, \", \n, \t, \r and
/// \Uxxxx (a UTF-16 unit in hexadecimal) stand for characters; a backslash before another
/// character is left out. Reading ends at the first mistake.
KW_EXPORT StringsTable parseStringsTable(std::string_view text);

} // namespace kw
