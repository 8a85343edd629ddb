// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <backends/linux/posix/Environment.h>

#include <string>
#include <system_error>

namespace kw {

/// A folder, "kwtoolkit/bin" in the cache home, with a program "open" in it, which is written where
/// it is missing or another one. It lies there and not with the application, which may be on its
/// way to the Trash. `open PATH` starts the application at a path in its own place:
///
/// 1. Of a folder "AppRun", else the program named as the folder is without ".app", else the one
///    that the Exec of a desktop entry names; each at the top, in bin or in usr/bin, and so is the
///    desktop entry.
/// 2. A file that can be executed.
/// 3. Whatever else xdg-open has for it.
///
/// What an AppImage says of itself in its environment is not handed on.
KW_EXPORT std::string folderWithOpenProgram(
    std::error_code& error, const Environment& environment = processEnvironment);

} // namespace kw
