// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/KWTranFadeWindow.h>

#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/windows/NSWindow+Fade.h>

namespace kw {

KWTranFadeWindow::KWTranFadeWindow(
    NSRect contentRect, unsigned /*styleMask*/, NSBackingStoreType /*backing*/, bool /*defer*/)
    : NSWindow(contentRect, NSWindowStyleMaskBorderless, NSBackingStoreType::buffered, false) {
    setBackgroundColor(NSColor::clearColor());
    setOpaque(false);
    setMovableByWindowBackground(true);
}

Class& KWTranFadeWindow::classObject() {
    static auto& object = *new Class("KWTranFadeWindow", NSWindow::classObject(),
        {
            method("fadeOut", &KWTranFadeWindow::fadeOut),
            method("fadeIn", &KWTranFadeWindow::fadeIn),
            method("fadeOut:", [](KWTranFadeWindow& self, NSObject*) { self.fadeOut(); }),
            method("fadeIn:", [](KWTranFadeWindow& self, NSObject*) { self.fadeIn(); }),
        });
    return object;
}

void KWTranFadeWindow::fadeOut() { kw::fadeOut(*this); }
void KWTranFadeWindow::fadeIn() { kw::fadeIn(*this); }

} // namespace kw
