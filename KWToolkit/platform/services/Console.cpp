// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/Console.h>

#include <cstdio>
#include <string>

namespace kw {

Console::~Console() = default;

void StandardErrorConsole::writeLine(std::string_view line) {
    // One call, so that lines of several threads do not mix.
    const std::string whole = std::string(line) + "\n";
    std::fwrite(whole.data(), 1, whole.size(), stderr);
}

} // namespace kw
