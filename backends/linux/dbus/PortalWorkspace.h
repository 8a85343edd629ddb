// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/dbus/SessionWorkspace.h>

namespace kw {

/// The workspace of a sandboxed process, whose URLs the desktop portal opens
/// (org.freedesktop.portal.OpenURI).
class KW_EXPORT PortalWorkspace final : public SessionWorkspace {
public:
    /// Whether this process runs in a sandbox that has the portal.
    static bool isSandboxed();

    /// Sends the request and does not wait for what the user says to it. False without a bus.
    bool openURL(const std::string& url) override;
};

} // namespace kw
