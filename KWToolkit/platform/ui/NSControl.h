// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <utility>

namespace kw {

/// A view that the user operates. Main thread.
class KW_EXPORT NSControl : public NSView {
public:
    using NSView::NSView;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    bool isEnabled() const { return m_isEnabled; }
    /// One that is disabled gives up the keyboard.
    void setEnabled(bool enabled);

    /// Who gets the action. Not owned.
    std::shared_ptr<NSObject> target() const { return m_target.lock(); }
    void setTarget(WeakReference target) { m_target = std::move(target); }
    /// The message that the target gets: "clicked:" with the control as its argument, "clicked"
    /// without one.
    SEL action() const { return m_action; }
    void setAction(SEL action) { m_action = action; }
    /// Returns whether there was somebody to take it.
    bool sendAction();

    bool acceptsFirstResponder() const override { return m_isEnabled; }
    bool isAccessibilityEnabled() const override { return m_isEnabled; }

protected:
    /// Lets go of the keyboard where the control, or a view in it, has it.
    void giveUpFirstResponder();

private:
    WeakReference m_target;
    SEL m_action;
    bool m_isEnabled = true;
};

} // namespace kw
