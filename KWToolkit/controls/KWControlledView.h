// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/NSView.h>

namespace kw {

class NSViewController;

/// A view whose controller comes right after it in the responder chain, also when the view moves to
/// another superview. Main thread.
class KW_EXPORT KWControlledView : public NSView {
public:
    using NSView::NSView;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Null once it is gone.
    NSViewController* viewController() const;
    /// Takes the former controller out of the chain and puts this one in its place; null only takes
    /// out. It is not owned. One that dies without having been taken out ends the chain; a
    /// `KWViewController` takes itself out.
    void setViewController(NSViewController* controller);
    /// The controller's next responder while there is one, else the view's.
    void setNextResponder(NSResponder* responder) override;

private:
    NSViewController* m_viewController = nullptr;
    WeakReference m_living;
};

} // namespace kw
