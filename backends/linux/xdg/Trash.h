// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <backends/linux/posix/Environment.h>

#include <string>
#include <system_error>

namespace kw {

/// Moves what has that name in the folder to the Trash of the freedesktop Trash specification 1.0,
/// a symbolic link itself and not what it leads to. That is "Trash" in the data home for what lies
/// on the same file system, else the one at the top of the file system. Nothing is ever copied:
/// with an error, such as where there can be no such folder, it is where it was. Any thread.
KW_EXPORT std::error_code moveToTrash(const std::string& folder, const std::string& name,
    const Environment& environment = processEnvironment);

} // namespace kw
