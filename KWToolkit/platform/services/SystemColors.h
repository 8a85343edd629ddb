// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSColor.h>

namespace kw {

enum class SystemColor { controlText, textBackground };

/// The colors of the desktop's or the host's theme. Main thread.
class KW_EXPORT SystemColors {
public:
    virtual ~SystemColors();

    /// As it is now; it changes with the theme.
    virtual NSColor color(SystemColor color) = 0;
};

/// Black on white.
class KW_EXPORT PlainSystemColors final : public SystemColors {
public:
    NSColor color(SystemColor color) override;
};

} // namespace kw
