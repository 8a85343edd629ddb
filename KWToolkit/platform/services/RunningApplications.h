// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>
#include <vector>

namespace kw {

/// A process that has windows.
struct RunningApplication {
    std::string bundleName; ///< what users call it
    std::string bundlePath; ///< an application folder, an AppImage or a program; may be empty
    int processIdentifier = 0; ///< 0 where it is not known

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// Which applications run on the user's desktop. Used on the main thread.
class KW_EXPORT RunningApplications {
public:
    virtual ~RunningApplications();
    /// The one that was active last comes first. Nothing where the desktop cannot tell.
    virtual std::optional<std::vector<RunningApplication>> frontToBack() = 0;
};

/// Cannot tell.
class KW_EXPORT UnavailableRunningApplications final : public RunningApplications {
public:
    std::optional<std::vector<RunningApplication>> frontToBack() override { return std::nullopt; }
};

} // namespace kw
