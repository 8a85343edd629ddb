// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Clock.h>

namespace kw {

/// A clock that stands until it is moved.
class KW_EXPORT HeadlessClock final : public Clock {
public:
    double now() const override { return m_now; }
    void advance(double seconds) { m_now += seconds; }

private:
    double m_now = 0;
};

} // namespace kw
