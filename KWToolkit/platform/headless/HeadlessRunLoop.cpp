// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>

namespace kw {

void HeadlessRunLoop::advance(double seconds) {
    const double end = now() + seconds;
    do {
        runOnce(end - now());
    } while (now() < end);
    while (runOnce(0)) { }
}

bool HeadlessRunLoop::wait(double seconds) {
    if (seconds == forever)
        stop();
    else
        m_clock.advance(seconds);
    return false;
}

} // namespace kw
