// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSResponder.h>

#include <memory>

namespace kw {

class NSTextView;
class NSView;
class ViewHost;

/// The window that views are in, as far as they are concerned: the end of their responder chain,
/// who of them has the keyboard, and the one text editor that they share. Main thread.
class KW_EXPORT NSWindow : public NSResponder {
public:
    /// The host outlives the window.
    explicit NSWindow(ViewHost& host);
    ~NSWindow() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Whether the keyboard is with this window.
    bool isKeyWindow() const;
    /// The view with the keyboard, or that gets it together with the window; else the window.
    NSResponder& firstResponder();
    /// Null takes the keyboard from all of them. Returns whether it is so now.
    bool makeFirstResponder(NSView* view);

    /// The editor for the text of any control in the window; its delegate is the control that is
    /// being edited. Null where there is none yet and none is to be made.
    std::shared_ptr<NSTextView> fieldEditor(bool createFlag, const NSObject* object);

private:
    ViewHost& m_host;
    std::shared_ptr<NSTextView> m_fieldEditor;
};

} // namespace kw
