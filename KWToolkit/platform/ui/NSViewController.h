// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSResponder.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <memory>
#include <string>

namespace kw {

class NSBundle;

/// Makes its view when it is first asked for, and owns it. Main thread.
class KW_EXPORT NSViewController : public NSResponder {
public:
    /// The view is described by `nibName`: by the host (see NSNib.h), or in a layout file in the
    /// bundle's resource folder. No bundle is the main bundle.
    explicit NSViewController(std::string nibName = {}, const NSBundle* bundle = nullptr);

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::string& nibName() const { return m_nibName; }
    bool isViewLoaded() const { return m_view != nullptr; }
    /// Loads the view if need be. Throws as `loadView`.
    const std::shared_ptr<NSView>& view();
    virtual void setView(std::shared_ptr<NSView> view) { m_view = std::move(view); }

    /// Makes the view that the name describes and gives it to `setView`. Throws an `NSException`
    /// named "NSInternalInconsistencyException" where there is none.
    virtual void loadView();

private:
    std::string m_nibName;
    const NSBundle* m_bundle;
    std::shared_ptr<NSView> m_view;
};

} // namespace kw
