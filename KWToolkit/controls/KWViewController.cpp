// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWViewController.h>

#include <KWToolkit/controls/NSView+ViewControllerAddition.h>

namespace kw {

namespace {

void forget(NSView& view, const NSViewController& controller) {
    if (kw::viewController(view) == &controller)
        setViewController(view, nullptr);
}

} // namespace

KWViewController::~KWViewController() {
    if (isViewLoaded())
        forget(*view(), *this);
}

Class& KWViewController::classObject() {
    static auto& object = *new Class("KWViewController", NSViewController::classObject());
    return object;
}

void KWViewController::loadView() {
    NSViewController::loadView();
    viewDidLoad();
}

void KWViewController::setView(std::shared_ptr<NSView> view) {
    // So that no view is left with a controller that does not know it.
    if (isViewLoaded() && this->view() != view)
        forget(*this->view(), *this);
    NSViewController::setView(view);
    if (view)
        setViewController(*view, this);
}

} // namespace kw
