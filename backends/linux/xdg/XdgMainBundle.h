// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/MainBundle.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// Finds out what the running program belongs to. The first of these that holds, after what the
/// host declares in code, which `NSBundle` puts first:
///
/// 1. An AppImage: APPIMAGE names a file, and the program lies in APPDIR where that is set. (The
///    programs that an AppImage starts inherit both variables, and are something else.) The bundle
///    is the AppImage's file, not the folder in which it is mounted; the desktop entry is at the
///    top of APPDIR, the resources are in "Resources" there.
/// 2. An application folder: the nearest folder above the program that is named "Name.app" is the
///    bundle. The desktop entry is beside the program, else at the top of the folder, with the
///    resources in "Resources" there.
/// 3. The bare program is the bundle, without version or resources.
///
/// Of several desktop entries the one holds whose TryExec or Exec names this program, else the
/// first by name. From it come the name (key Name, not localized), the identifier (its file name
/// without
/// ".desktop") and the version (key X-KWToolkit-Version, else X-AppImage-Version). What it does not
/// tell is the program's file name, but an application folder's name is "Name".
///
/// All is found out once, when the bundle is made.
class KW_EXPORT XdgMainBundle final : public MainBundle {
public:
    /// The running program.
    XdgMainBundle();
    /// The path is what /proc/self/exe reads: " (deleted)" is at its end where the program's file
    /// has been deleted or replaced.
    XdgMainBundle(const std::string& executablePath, const Environment& environment);

    BundleInfo info() const override { return m_info; }
    std::vector<std::string> preferredLanguages() const override { return m_languages; }

private:
    BundleInfo m_info;
    std::vector<std::string> m_languages;
};

} // namespace kw
