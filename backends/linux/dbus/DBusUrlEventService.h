// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/RunLoop.h>
#include <KWToolkit/platform/services/UrlEventService.h>

#include <memory>

struct sd_bus;
struct sd_bus_message;

namespace kw {

/// URLs by way of the session bus: the process that owns the host's identifier there is the one
/// that gets them, through the interface org.freedesktop.Application (Desktop Entry Specification
/// 1.5, "D-Bus Activation"). The methods Open and Activate become get-URL and reopen events, from
/// the run loop of the thread that called first.
///
/// Without a bus, or where the identifier cannot be a name on it (which takes two parts at least,
/// as in "org.example"), there are only the URLs that `receive` is given.
///
/// `receive` waits for the owner's answer for three seconds at most. A byte of a URL that is not
/// UTF-8, or 0, travels percent-escaped. A bus that goes away is connected to again at the next
/// call.
class KW_EXPORT DBusUrlEventService final : public UrlEventService {
public:
    DBusUrlEventService();
    ~DBusUrlEventService() override;

    bool listen() override;
    UrlReception receive(const std::vector<std::string>& urls) override;

private:
    class Connection;
    enum class Claim { owned, taken, impossible };
    Claim claim();

    std::unique_ptr<Connection> m_connection;
};

} // namespace kw
