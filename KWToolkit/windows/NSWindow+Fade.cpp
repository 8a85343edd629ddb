// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/NSWindow+Fade.h>

#include <KWToolkit/platform/ui/NSViewAnimation.h>

#include <memory>

namespace kw {

namespace {

void startFade(NSWindow& window, const char* effect) {
    const NSViewAnimationDescription fade {
        {NSViewAnimationTargetKey, WeakReference(window)},
        {NSViewAnimationEffectKey, effect},
    };
    std::make_shared<NSViewAnimation>(std::vector {fade})->startAnimation();
}

} // namespace

void fadeOut(NSWindow& window) { startFade(window, NSViewAnimationFadeOutEffect); }
void fadeIn(NSWindow& window) { startFade(window, NSViewAnimationFadeInEffect); }

} // namespace kw
