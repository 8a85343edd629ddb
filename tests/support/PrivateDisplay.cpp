// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <tests/support/PrivateDisplay.h>

#include <stdexcept>

namespace kw::test {

PrivateDisplay::PrivateDisplay() { start({}); }

void PrivateDisplay::kill() { m_server.reset(); }

void PrivateDisplay::restart() { start({m_name}); }

void PrivateDisplay::start(const std::vector<std::string>& arguments) {
    std::vector<std::string> command {"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset",
        // Keys repeat after 150 ms, then every 10 ms.
        "-ardelay", "150", "-arinterval", "10"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    m_server.emplace(command);
    std::string output;
    while (const auto line = m_server->readLine()) {
        if (line->find_first_not_of("0123456789") == std::string::npos) {
            m_name = ":" + *line;
            return;
        }
        output += "\n" + *line;
    }
    throw std::runtime_error("Xvfb did not start. These tests need it (package xvfb)." + output);
}

} // namespace kw::test
