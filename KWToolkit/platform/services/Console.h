// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string_view>

namespace kw {

/// Where the toolkit writes its diagnostics. Used on any thread.
class KW_EXPORT Console {
public:
    virtual ~Console();
    /// Writes one line; `line` has no end-of-line. A line that cannot be written is lost.
    virtual void writeLine(std::string_view line) = 0;
};

/// Lines on standard error, each written whole.
class KW_EXPORT StandardErrorConsole final : public Console {
public:
    void writeLine(std::string_view line) override;
};

} // namespace kw
