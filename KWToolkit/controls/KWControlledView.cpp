// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWControlledView.h>

#include <KWToolkit/platform/ui/NSViewController.h>

namespace kw {

Class& KWControlledView::classObject() {
    static auto& object = *new Class("KWControlledView", NSView::classObject());
    return object;
}

void KWControlledView::setViewController(NSViewController* controller) {
    if (m_viewController) {
        NSView::setNextResponder(m_viewController->nextResponder());
        m_viewController->setNextResponder(nullptr);
    }
    m_viewController = controller;
    if (controller) {
        NSResponder* const next = nextResponder();
        NSView::setNextResponder(controller);
        controller->setNextResponder(next);
    }
}

void KWControlledView::setNextResponder(NSResponder* responder) {
    if (m_viewController)
        m_viewController->setNextResponder(responder);
    else
        NSView::setNextResponder(responder);
}

} // namespace kw
