// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Platform.h>

namespace kw::test {

/// Runs the thread's loop until the condition holds. False if it does not within ten seconds.
template <class Condition>
bool pumpUntil(Condition condition) {
    const SteadyClock clock;
    const double deadline = clock.now() + 10;
    while (!condition()) {
        if (clock.now() > deadline)
            return false;
        Platform::runLoop().runOnce(0.1);
    }
    return true;
}

} // namespace kw::test
