// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/RunLoop.h>
#include <KWToolkit/platform/services/RunningApplications.h>
#include <backends/linux/posix/Environment.h>
#include <backends/linux/x11/X11Connection.h>

#include <compare>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kw {

/// The processes whose windows the window manager of an X server manages, as EWMH has them; nothing
/// without a window manager.
///
/// At first the order is that of the windows on the screen. From then on each window that becomes
/// active goes to the front, whatever is raised above it; what opens without becoming active comes
/// last. Panels, splash screens and the like are no applications, minimised windows stay.
///
/// The host is called what `NSBundle` says. Another application is an AppImage, a folder "Name.app"
/// or a bare program as `XdgMainBundle` tells them apart. The desktop entry of its windows names a
/// bare program, and says what is started where the process is an interpreter or cannot be looked
/// at. What runs elsewhere or does not tell its process is known by its windows alone.
class KW_EXPORT X11RunningApplications final : public RunningApplications {
public:
    /// The display is named as in DISPLAY; an empty name is what DISPLAY says. It is opened at the
    /// first use, and again where it was lost. Events are read by the loop of the thread that makes
    /// the service. The environment says where desktop entries and their programs are.
    explicit X11RunningApplications(
        std::string displayName = {}, Environment environment = processEnvironment);
    ~X11RunningApplications() override;

    std::optional<std::vector<RunningApplication>> frontToBack() override;

private:
    /// What a window tells of its application.
    struct Identity {
        int process = 0; ///< 0 where it is not known, or another machine's
        xcb_window_t leader = 0;
        std::string instance;
        std::string windowClass;
        std::string entry; ///< the identifier of its desktop entry

        friend auto operator<=>(const Identity&, const Identity&) = default;
        /// The same for all windows of an application.
        Identity ofApplication() const;
    };
    class Entries;

    bool isConnected() const { return m_connection && !m_connection->isLost(); }
    void connect();
    void disconnect();
    void readEvents();
    XcbPointer<xcb_get_property_reply_t> property(xcb_window_t window, xcb_atom_t name) const;

    xcb_window_t activeWindow() const;
    void moveToFront(xcb_window_t window);
    bool isManaged() const;
    void updateHistory();
    std::vector<Identity> identities() const;
    RunningApplication describe(const Identity& identity, Entries& entries) const;

    const std::string m_displayName;
    const Environment m_environment;
    RunLoop& m_runLoop;
    std::unique_ptr<X11Connection> m_connection;
    RunLoop::Watch m_watch = RunLoop::Watch::none;
    std::vector<xcb_atom_t> m_atoms;
    std::vector<xcb_window_t> m_history; ///< the one that was active last comes first
    std::map<Identity, RunningApplication> m_described; ///< of those that ran when last asked
};

} // namespace kw
