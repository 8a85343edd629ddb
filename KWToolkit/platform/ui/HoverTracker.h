// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSEvent.h>
#include <KWToolkit/platform/ui/NSTrackingArea.h>

#include <memory>
#include <vector>

namespace kw {

class NSView;

/// Tells the owners of a view tree's tracking areas of the mouse. Whoever shows the tree keeps one,
/// and calls it when the mouse or a view has moved or the window's key state has changed.
class KW_EXPORT HoverTracker {
public:
    /// `event` says where the mouse is, and that it moved where its type is `mouseMoved`.
    void mouseIsAt(NSView& root, bool isKeyWindow, const NSEvent& event);
    /// The mouse is over none of the views.
    void mouseIsAway(NSView& root, const NSEvent& event);

private:
    using Areas = std::vector<std::shared_ptr<NSTrackingArea>>;
    void update(NSView& root, Areas inside, const NSEvent& event);

    Areas m_inside;
};

} // namespace kw
