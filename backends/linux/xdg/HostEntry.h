// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What the desktop entries of the host that it writes itself have in common.
#pragma once

#include <backends/linux/xdg/DesktopEntry.h>

#include <optional>
#include <string>
#include <system_error>

namespace kw {

/// The file name of the host's entries. Nothing where there is no identifier, or one that cannot
/// name a file.
std::optional<std::string> hostEntryName();

/// The host's program, as a user would start it.
std::string hostProgram();

/// Empty for a file that is not there.
std::error_code readEntry(const std::string& path, std::optional<DesktopEntry>& entry);

/// Puts the entry at the path, for good, and makes the folders above it. A new file can be read by
/// all.
std::error_code writeEntry(const std::string& path, const DesktopEntry& entry);

} // namespace kw
