// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/NSEvent.h>

namespace kw {

/// Something that can take events. What it does not take goes on to the next responder. Main
/// thread.
class KW_EXPORT NSResponder : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Not owned; null at the end of the chain, and where it is gone. A view that is added to
    /// another, or shown, is given its superview or window.
    NSResponder* nextResponder() const;
    virtual void setNextResponder(NSResponder* responder);

    virtual bool acceptsFirstResponder() const { return false; }
    /// Asked when the responder would get the keyboard focus; true takes it.
    virtual bool becomeFirstResponder() { return true; }
    /// Told that the focus would leave; true lets it.
    virtual bool resignFirstResponder() { return true; }

    virtual void keyDown(const NSEvent& event);
    virtual void keyUp(const NSEvent& event);
    virtual void flagsChanged(const NSEvent& event);
    virtual void mouseDown(const NSEvent& event);
    virtual void mouseUp(const NSEvent& event);
    virtual void mouseDragged(const NSEvent& event);
    virtual void mouseMoved(const NSEvent& event);
    virtual void mouseEntered(const NSEvent& event);
    virtual void mouseExited(const NSEvent& event);

    /// Offered every key press before the host's shortcuts see it; true consumes it.
    virtual bool performKeyEquivalent(const NSEvent&) { return false; }

private:
    WeakReference m_nextResponder;
};

} // namespace kw
