// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SystemColors.h>

namespace kw::qt {

/// Those of the application's palette. Plain without a QGuiApplication.
class QtSystemColors final : public SystemColors {
public:
    NSColor color(SystemColor color) override;
};

} // namespace kw::qt
