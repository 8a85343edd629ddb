// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/runtime/NSObject+BlocksAdditions.h>

#include <KWToolkit/platform/Platform.h>

#include <utility>

namespace kw {

void my_callBlock(const std::function<void()>& block) {
    if (block)
        block();
}

void RunAfterDelay(std::function<void()> block, double delay) {
    Platform::runLoop().callAfter(delay, [block = std::move(block)] { my_callBlock(block); });
}

} // namespace kw
