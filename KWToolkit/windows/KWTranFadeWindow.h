// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

/// A window without a frame that can be seen through where nothing is drawn, moved by its
/// background, have the keyboard, and fade. Main thread.
///
///     auto window = std::make_shared<kw::KWTranFadeWindow>(kw::NSMakeRect(100, 100, 300, 200));
///     window->setContentView(badge);
///     window->fadeIn();
class KW_EXPORT KWTranFadeWindow : public NSWindow {
public:
    /// Deliberate: style, backing and `defer` are always those of a buffered window without a
    /// frame, whatever is passed.
    explicit KWTranFadeWindow(NSRect contentRect, unsigned styleMask = NSWindowStyleMaskBorderless,
        NSBackingStoreType backing = NSBackingStoreType::buffered, bool defer = false);

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Always, though it has no title.
    bool canBecomeKeyWindow() const override { return true; }

    /// See NSWindow+Fade.h. The messages `fadeOut:` and `fadeIn:` do the same, for a button's
    /// action; the sender does not matter.
    void fadeOut();
    void fadeIn();
};

} // namespace kw
