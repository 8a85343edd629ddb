// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/LoginItems.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// The desktop entries in $XDG_CONFIG_HOME/autostart, but those with Hidden=true or
/// X-GNOME-Autostart-enabled=false. The token is an entry's file name.
///
/// The entries that the toolkit wrote come first, in their order, then the others by file name:
/// these are never written, except that a changed `isHidden` becomes their key X-KWToolkit-Hide,
/// which only the toolkit heeds, and that a removed item's file is deleted, or gets Hidden=true
/// where the system has one of that name, which would hold instead. Moving one has no effect.
///
/// The path is the key X-KWToolkit-Path, else the program that TryExec or Exec names, looked for in
/// PATH, or the folder "Name.app" in which that lies; an entry whose program cannot be executed has
/// no path.
///
/// A new item takes the place of one of the toolkit's for the same path. It starts the host, if the
/// path is that of the main bundle, else the file at the path. A path that an entry cannot hold is
/// refused before anything is written, with `std::errc::illegal_byte_sequence` if it is not UTF-8,
/// else with `std::errc::invalid_argument`; and so is an item whose path has changed.
class KW_EXPORT XdgLoginItems final : public LoginItems {
public:
    explicit XdgLoginItems(Environment environment = processEnvironment);

    std::vector<LoginItem> read() override;
    std::error_code update(
        const std::function<void(std::vector<LoginItem>& items)>& change) override;
    /// By KWTOOLKIT_LOGIN_ITEM, which an entry sets. What the host starts inherits it, so it counts
    /// only where it has the path of the main bundle.
    LoginLaunch launch() const override;

private:
    Environment m_environment;
};

} // namespace kw
