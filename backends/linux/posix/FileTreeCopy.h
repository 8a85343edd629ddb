// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <system_error>

namespace kw {

/// Copies a file, a symbolic link, a FIFO, or a folder with all that is in it, to a path where
/// nothing is (errc::file_exists), for good.
///
/// Kept are modes, times to the nanosecond, symbolic links, hard links within the copy, holes, the
/// extended attributes of files and folders with their access lists, and owners. Not kept is what
/// this user may not set or the destination's file system does not have; a file whose owner is not
/// kept does not run as its owner. Devices and sockets cannot be copied: errc::not_supported. A
/// folder cannot be copied into itself: errc::invalid_argument.
///
/// The copy takes shape in a folder ".<name>.kwtoolkit-copy-XXXXXX" beside the destination and is
/// renamed once it is on the disk. With an error nothing of it is left, unless it was the disk that
/// failed at the very end. What a killed copier left is removed by the next copy to the same
/// destination.
///
/// Threads of its own copy what files hold while the tree is walked; they end with the call.
///
/// What changes meanwhile is copied as it is found, or is an error; no symbolic link put in its
/// place is followed.
KW_EXPORT std::error_code copyFileTree(const std::string& path, const std::string& to);

} // namespace kw
