// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/TextMetrics.h>

namespace kw::qt {

/// As `QtGraphicsContext` draws on the primary screen. Nominal without a QGuiApplication.
class QtTextMetrics final : public TextMetrics {
public:
    NSSize sizeOfText(std::string_view text, const TextAttributes& attributes) override;
    NSSize sizeOfButton(const NSAttributedString& title) override;
};

} // namespace kw::qt
