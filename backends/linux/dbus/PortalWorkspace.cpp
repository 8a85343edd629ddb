// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/dbus/PortalWorkspace.h>

#include <backends/linux/dbus/SdBus.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kw {

bool PortalWorkspace::isSandboxed() {
    std::error_code error;
    return std::filesystem::exists("/.flatpak-info", error) || std::getenv("SNAP");
}

bool PortalWorkspace::openURL(const std::string& url) {
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0)
        return false;
    const Bus bus(opened); // is flushed at the end
    sd_bus_message* made = nullptr;
    int error = sd_bus_message_new_method_call(bus.get(), &made, "org.freedesktop.portal.Desktop",
        "/org/freedesktop/portal/desktop", "org.freedesktop.portal.OpenURI", "OpenURI");
    const Message message(made);
    if (error >= 0)
        error = sd_bus_message_append(message.get(), "ssa{sv}", "", url.c_str(), 0);
    if (error >= 0)
        error = sd_bus_message_set_expect_reply(message.get(), 0);
    return error >= 0 && sd_bus_send(bus.get(), message.get(), nullptr) >= 0;
}

} // namespace kw
