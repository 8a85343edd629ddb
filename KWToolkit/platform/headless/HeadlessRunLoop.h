// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/BasicRunLoop.h>
#include <KWToolkit/platform/headless/HeadlessClock.h>

namespace kw {

/// A loop on a clock of its own making: waiting moves the clock and takes no time.
///
/// `run` returns when nothing is left to do, for nothing else could ever happen.
class KW_EXPORT HeadlessRunLoop final : public BasicRunLoop {
public:
    explicit HeadlessRunLoop(HeadlessClock& clock)
        : m_clock(clock) { }

    /// Moves the clock on by `seconds`, a finite time, and does all that falls due on the way.
    void advance(double seconds);

    Watch watchDescriptor(int, std::function<void()>) override { return Watch::none; }
    void unwatch(Watch) override { }

protected:
    double now() const override { return m_clock.now(); }
    bool wait(double seconds) override;
    void wake() override { }

private:
    HeadlessClock& m_clock;
};

} // namespace kw
