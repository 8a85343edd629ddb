// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/WebService.h>

namespace kw {

/// Shows web pages to nobody. What a view was given to show is its main frame's `content`.
class KW_EXPORT HeadlessWebService final : public WebService {
public:
    bool isAvailable() const override { return available; }
    void settingsChanged() override { ++changes; }

    bool available = true;
    int changes = 0; ///< how often the settings have changed
};

} // namespace kw
