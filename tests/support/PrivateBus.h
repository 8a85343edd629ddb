// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/ChildProcess.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace kw::test {

/// A session bus of the test's own.
class PrivateBus {
public:
    PrivateBus()
        : m_daemon({"dbus-daemon", "--session", "--nofork", "--print-address=1"}) {
        const auto address = m_daemon.readLine();
        if (!address)
            throw std::runtime_error("no session bus");
        m_address = *address;
    }
    /// As in DBUS_SESSION_BUS_ADDRESS.
    const std::string& address() const { return m_address; }

private:
    ChildProcess m_daemon;
    std::string m_address;
};

} // namespace kw::test
