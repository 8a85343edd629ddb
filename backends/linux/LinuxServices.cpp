// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The services of a Linux desktop.
#include <KWToolkit/platform/DefaultServices.h>

#include <KWToolkit/platform/Platform.h>
#include <backends/linux/dbus/DBusUrlEventService.h>
#include <backends/linux/dbus/PortalWorkspace.h>
#include <backends/linux/dbus/SessionWorkspace.h>
#include <backends/linux/posix/CLocale.h>
#include <backends/linux/posix/Environment.h>
#include <backends/linux/posix/PollRunLoop.h>
#include <backends/linux/posix/PosixFileSystem.h>
#include <backends/linux/posix/PosixSystemLog.h>
#include <backends/linux/x11/X11HotkeyService.h>
#include <backends/linux/x11/X11RunningApplications.h>
#include <backends/linux/x11/XkbKeyboardLayout.h>
#include <backends/linux/xdg/JsonDefaultsStore.h>
#include <backends/linux/xdg/PolkitAuthorizationService.h>
#include <backends/linux/xdg/XdgLoginItems.h>
#include <backends/linux/xdg/XdgMainBundle.h>
#include <backends/linux/xdg/XdgProcessService.h>
#include <backends/linux/xdg/XdgSearchPaths.h>

namespace kw::detail {

template <>
std::unique_ptr<HotkeyService> makeDefaultService() {
    return std::make_unique<X11HotkeyService>();
}

template <>
std::unique_ptr<KeyboardLayout> makeDefaultService() {
    return std::make_unique<XkbKeyboardLayout>();
}

template <>
std::unique_ptr<MainBundle> makeDefaultService() {
    return std::make_unique<XdgMainBundle>();
}

template <>
std::unique_ptr<DefaultsStore> makeDefaultService() {
    return std::make_unique<JsonDefaultsStore>();
}

template <>
std::unique_ptr<SearchPaths> makeDefaultService() {
    return std::make_unique<XdgSearchPaths>();
}

template <>
std::unique_ptr<FileSystem> makeDefaultService() {
    return std::make_unique<PosixFileSystem>();
}

template <>
std::unique_ptr<SystemLog> makeDefaultService() {
    return std::make_unique<PosixSystemLog>();
}

template <>
std::unique_ptr<Workspace> makeDefaultService() {
    if (PortalWorkspace::isSandboxed())
        return std::make_unique<PortalWorkspace>();
    return std::make_unique<SessionWorkspace>();
}

template <>
std::unique_ptr<UrlEventService> makeDefaultService() {
    return std::make_unique<DBusUrlEventService>();
}

template <>
std::unique_ptr<AuthorizationService> makeDefaultService() {
    return std::make_unique<PolkitAuthorizationService>();
}

template <>
std::unique_ptr<ProcessService> makeDefaultService() {
    return std::make_unique<XdgProcessService>();
}

template <>
std::unique_ptr<LoginItems> makeDefaultService() {
    return std::make_unique<XdgLoginItems>();
}

template <>
std::unique_ptr<RunningApplications> makeDefaultService() {
    // The X server that runs below a Wayland desktop knows some of the windows only.
    if (!processEnvironment("WAYLAND_DISPLAY").empty())
        return std::make_unique<UnavailableRunningApplications>();
    return std::make_unique<X11RunningApplications>();
}

template <>
std::unique_ptr<Locale> makeDefaultService() {
    return std::make_unique<CLocale>();
}

template <>
std::unique_ptr<RunLoop> makeDefaultService() {
    return std::make_unique<PollRunLoop>();
}

} // namespace kw::detail
