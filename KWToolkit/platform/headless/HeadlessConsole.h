// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Console.h>

#include <mutex>
#include <string>
#include <vector>

namespace kw {

/// Keeps the lines.
class KW_EXPORT HeadlessConsole final : public Console {
public:
    void writeLine(std::string_view line) override;
    std::vector<std::string> lines() const;

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace kw
