// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <tests/support/PrivateDisplay.h>

#include <signal.h>

#include <stdexcept>

namespace kw::test {

PrivateDisplay::PrivateDisplay()
    : m_server({"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset"}) {
    std::string output;
    while (const auto line = m_server.readLine()) {
        if (line->find_first_not_of("0123456789") == std::string::npos) {
            m_name = ":" + *line;
            return;
        }
        output += "\n" + *line;
    }
    throw std::runtime_error("Xvfb did not start. These tests need it (package xvfb)." + output);
}

void PrivateDisplay::kill() {
    m_server.signal(SIGKILL);
    m_server.wait();
}

} // namespace kw::test
