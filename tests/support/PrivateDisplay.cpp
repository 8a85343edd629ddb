// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <tests/support/PrivateDisplay.h>

#include <unistd.h>

#include <stdexcept>

namespace kw::test {

namespace {

/// A number of its own, which is still free for a restart: servers that look for one begin at 0.
std::string newName() {
    static int count = 0;
    constexpr int first = 1000;
    constexpr int numbers = 58'000;
    return ":" + std::to_string(first + (::getpid() * 16 + count++) % numbers);
}

} // namespace

PrivateDisplay::PrivateDisplay()
    : m_name(newName()) {
    start();
}

void PrivateDisplay::kill() { m_server.reset(); }

void PrivateDisplay::restart() { start(); }

void PrivateDisplay::start() {
    m_server.emplace(
        std::vector<std::string> {"Xvfb", m_name, "-displayfd", "1", "-nolisten", "tcp", "-noreset",
            // Keys repeat after 150 ms, then every 10 ms.
            "-ardelay", "150", "-arinterval", "10"});
    std::string output;
    while (const auto line = m_server->readLine()) {
        if (":" + *line == m_name)
            return;
        output += "\n" + *line;
    }
    throw std::runtime_error("Xvfb did not start. These tests need it (package xvfb)." + output);
}

} // namespace kw::test
