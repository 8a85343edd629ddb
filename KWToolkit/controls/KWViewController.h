// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSViewController.h>

#include <concepts>
#include <memory>

namespace kw {

/// A view controller whose view is described under the name of its class and knows its controller:
///
///     class Preferences : public kw::KWViewController { … }; // Preferences.ui in the resources
///     const auto preferences = kw::KWViewController::viewController<Preferences>();
///     window.addSubview(preferences->view());
///
/// It needs a `classObject` of its own: without one its class is that of its base. Main thread.
class KW_EXPORT KWViewController : public NSViewController {
public:
    using NSViewController::NSViewController;
    /// Takes itself out of its view's responder chain.
    ~KWViewController() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// A controller of the class, with the view of the class's name in the main bundle. The class
    /// has a constructor that takes the name, as this one.
    template <std::derived_from<KWViewController> Controller = KWViewController>
    static std::shared_ptr<Controller> viewController() {
        return std::make_shared<Controller>(Controller::classObject().name());
    }

    /// Loads the view, then calls `viewDidLoad`.
    void loadView() override;
    /// Also tells the view who controls it.
    void setView(std::shared_ptr<NSView> view) override;
    /// Called once, after the view has been loaded. This one does nothing.
    virtual void viewDidLoad() { }
};

} // namespace kw
