// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/services/LoginItems.h>

#include <string>
#include <system_error>

namespace kw {

/// Whether the host starts when the user logs in. Any thread.
///
/// A login item is the host's where the name is anywhere in its path, in the same case:
/// "Mail" is also in "/Applications/Mailbox.app" and in every path below "/home/Mail". Without an
/// argument the name is the host's own; `NSInvalidArgumentException` is thrown where that is not
/// known. A host whose path does not hold its name passes the path of its bundle, which finds it
/// and whatever has that path within its own.
class KW_EXPORT KWStartUpUtils {
public:
    KWStartUpUtils() = delete;

    /// Puts the running application before all other login items, in place of those of the name.
    static std::error_code addApplicationToStartUpItems(bool hidden);
    static std::error_code addApplicationToStartUpItems(const std::string& name, bool hidden);
    /// Removes every login item of the name.
    static std::error_code removeApplicationToLogin();
    static std::error_code removeApplicationToLogin(const std::string& name);
    /// False, too, where the login items cannot be read.
    static bool ApplicationIsStartUpItem();
    static bool ApplicationIsStartUpItem(const std::string& name);

    /// Whether this process was started by its login item, and whether it shall hide. A host hides
    /// its windows itself.
    static LoginLaunch wasStartedAtLogin();
};

} // namespace kw
