// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Paths as text; nothing is looked up on a disk.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <string_view>

namespace kw {

/// Joins with exactly one slash: "/tmp" and "a" give "/tmp/a", and so do "/tmp/" and "/a". An empty
/// path gives the component, an empty component the path, without slashes at the end.
KW_EXPORT std::string stringByAppendingPathComponent(
    std::string_view path, std::string_view component);

/// What is after the last slash: "c" of "/a/c" and of "/a/c/", "/" of "/".
KW_EXPORT std::string lastPathComponent(std::string_view path);

/// What is before the last component: "/a" of "/a/c" and of "/a/c/", "/" of "/a" and of "/",
/// nothing of "c".
KW_EXPORT std::string stringByDeletingLastPathComponent(std::string_view path);

/// The path without the extension of its last component, and without slashes at the end: "/a/c" of
/// "/a/c.app/", "c.tar" of "c.tar.gz", "a" of "a.". A name that begins with its only dot, such as
/// ".bashrc", has no extension.
KW_EXPORT std::string stringByDeletingPathExtension(std::string_view path);

/// Puts the user's home folder in place of "~" or a leading "~/". Anything else stays as it is, and
/// so does all of it where there is no home folder.
KW_EXPORT std::string stringByExpandingTildeInPath(std::string_view path);

} // namespace kw
