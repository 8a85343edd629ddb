// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWControlledView.h>

#include <KWToolkit/platform/ui/NSViewController.h>

namespace kw {

Class& KWControlledView::classObject() {
    static auto& object = *new Class("KWControlledView", NSView::classObject());
    return object;
}

NSViewController* KWControlledView::viewController() const {
    // Also while it is being destroyed: it still takes itself out then.
    bool lives = false;
    m_living.whileItLives([&lives](const NSObject&) { lives = true; });
    return lives ? m_viewController : nullptr;
}

void KWControlledView::setViewController(NSViewController* controller) {
    if (NSViewController* const former = viewController()) {
        NSView::setNextResponder(former->nextResponder());
        former->setNextResponder(nullptr);
    }
    m_viewController = controller;
    m_living = controller;
    if (controller) {
        NSResponder* const next = nextResponder();
        NSView::setNextResponder(controller);
        controller->setNextResponder(next);
    }
}

void KWControlledView::setNextResponder(NSResponder* responder) {
    if (NSViewController* const controller = viewController())
        controller->setNextResponder(responder);
    else
        NSView::setNextResponder(responder);
}

} // namespace kw
