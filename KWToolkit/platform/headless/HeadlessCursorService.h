// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/CursorService.h>

#include <vector>

namespace kw {

/// Keeps the pointers that were set, in order.
class HeadlessCursorService final : public CursorService {
public:
    std::vector<NSCursor> cursors;

    void set(NSCursor cursor) override { cursors.push_back(cursor); }
};

} // namespace kw
