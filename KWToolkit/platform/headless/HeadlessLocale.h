// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Locale.h>

namespace kw {

/// The conventions that a test says.
class KW_EXPORT HeadlessLocale final : public Locale {
public:
    NumberSeparators numberSeparators() const override { return separators; }

    NumberSeparators separators;
};

} // namespace kw
