// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/services/RunningApplications.h>

#include <optional>
#include <string>
#include <vector>

namespace kw {

/// The applications that run, the one that was active last first. Never empty: nothing where none
/// runs, and where the desktop cannot tell. Main thread.
KW_EXPORT std::optional<std::vector<RunningApplication>>
CopyLaunchedApplicationsInFrontToBackOrder();

/// Which application was active before the host, for example to hand the focus back to it. Main
/// thread.
///
/// The host is told by its name, so a second copy of it counts as the host; a host without a name
/// is never found.
class KW_EXPORT KWActiveApplications {
public:
    KWActiveApplications() = delete;

    /// What `CopyLaunchedApplicationsInFrontToBackOrder` answers.
    static std::optional<std::vector<RunningApplication>> activeApplications();

    /// The second application where the host is the first, else the first. Nothing where there is
    /// no list. Throws an `NSRangeException` where the host alone runs, and so do those below.
    static std::optional<RunningApplication> previousActiveApplication();
    /// The name of its bundle's file, without the extension: "Preview" of "/a/Preview.app". Nothing
    /// where the path is not known.
    static std::optional<std::string> previousActiveApplicationName();
    /// Nothing where it is not known.
    static std::optional<std::string> previousActiveApplicationPath();
};

} // namespace kw
