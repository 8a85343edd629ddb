// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/ChildProcess.h>

#include <optional>
#include <string>
#include <vector>

namespace kw::test {

/// An X server of the test's own, with no one at its keyboard.
class PrivateDisplay {
public:
    /// Throws `std::runtime_error` where the server does not start.
    PrivateDisplay();

    /// As in DISPLAY.
    const std::string& name() const { return m_name; }
    /// Ends the server at once, as a crash would.
    void kill();
    /// Begins a new server of the same name after `kill`.
    void restart();

private:
    void start();

    std::optional<ChildProcess> m_server;
    std::string m_name;
};

} // namespace kw::test
