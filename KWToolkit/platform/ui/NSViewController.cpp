// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSViewController.h>

#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/ui/NSNib.h>

#include <utility>

namespace kw {

NSViewController::NSViewController(std::string nibName, const NSBundle* bundle)
    : m_nibName(std::move(nibName))
    , m_bundle(bundle) { }

Class& NSViewController::classObject() {
    static auto& object = *new Class("NSViewController", NSResponder::classObject());
    return object;
}

const std::shared_ptr<NSView>& NSViewController::view() {
    if (!m_view)
        loadView();
    return m_view;
}

void NSViewController::loadView() {
    const NSBundle& bundle = m_bundle ? *m_bundle : NSBundle::mainBundle();
    std::string reason;
    auto view = loadViewDescription(m_nibName, bundle.info().resourcePath, reason);
    if (!view)
        throw NSException("NSInternalInconsistencyException",
            "could not load the view \"" + m_nibName + "\" of " + description() + ": " + reason);
    setView(std::move(view));
}

} // namespace kw
