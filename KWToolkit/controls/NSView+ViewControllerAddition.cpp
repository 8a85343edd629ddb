// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSView+ViewControllerAddition.h>

#include <KWToolkit/controls/KWControlledView.h>
#include <KWToolkit/runtime/NSObject+OBAssociatedObjects.h>

namespace kw {

namespace {

// Compared by identity.
constexpr char KWViewExtensionsViewControllerKey[] = "KWViewExtensionsViewControllerKey";

} // namespace

void setViewController(NSView& view, NSViewController* controller) {
    if (auto* const controlled = dynamic_cast<KWControlledView*>(&view))
        controlled->setViewController(controller);
    else
        weaklyAssociateValue(view, controller, KWViewExtensionsViewControllerKey);
}

NSViewController* viewController(const NSView& view) {
    if (const auto* const controlled = dynamic_cast<const KWControlledView*>(&view))
        return controlled->viewController();
    return associatedValueForKey<NSViewController>(view, KWViewExtensionsViewControllerKey).get();
}

} // namespace kw
