// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessConsole.h>

namespace kw {

void HeadlessConsole::writeLine(std::string_view line) {
    const std::lock_guard lock(m_mutex);
    m_lines.emplace_back(line);
}

std::vector<std::string> HeadlessConsole::lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

} // namespace kw
