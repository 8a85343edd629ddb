// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// Time that only goes forward. Used on any thread.
class KW_EXPORT Clock {
public:
    virtual ~Clock();
    /// Seconds since an arbitrary beginning.
    virtual double now() const = 0;
};

/// The machine's steady clock.
class KW_EXPORT SteadyClock final : public Clock {
public:
    double now() const override;
};

} // namespace kw
