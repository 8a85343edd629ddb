// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>
#include <KWToolkit/platform/headless/HeadlessWindowService.h>

namespace kw::test {

/// Windows that nobody sees, and time that does not pass by itself.
struct HeadlessWindows {
    HeadlessWindow& native(std::size_t index = 0) { return *service.windows.at(index); }

    HeadlessClock clock;
    HeadlessRunLoop loop {clock};
    HeadlessWindowService service;
    ServiceScope<HeadlessClock> clockScope {clock};
    ServiceScope<HeadlessRunLoop> loopScope {loop};
    ServiceScope<HeadlessWindowService> serviceScope {service};
};

} // namespace kw::test
