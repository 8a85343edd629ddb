// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Small files as a whole. Any thread; calls that a signal interrupts are repeated.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <sys/types.h>

#include <string>
#include <string_view>
#include <system_error>

namespace kw {

/// With an error `content` holds what had been read so far.
KW_EXPORT std::error_code readFile(const std::string& path, std::string& content);

/// Makes the folder, and those above it that are missing, with mode 0700, for good. A folder that
/// is there stays as it is.
KW_EXPORT std::error_code createFolders(const std::string& path);

/// Puts a file with this content in place of what is at the path, for good: whoever opens it finds
/// the former content or the new one, also after a crash or a power cut. The mode stays; a new file
/// gets `mode` whatever the umask is. Of a symbolic link, what it leads to is replaced.
///
/// With an error the former file is there, unless it was the disk that failed at the very end.
///
/// The content takes shape in a file ".<name>.replacement" beside the old one, which one writer at
/// a time has. What a killed one left is used again, so there is never more than one.
KW_EXPORT std::error_code replaceFile(
    const std::string& path, std::string_view content, mode_t mode = 0600);

} // namespace kw
