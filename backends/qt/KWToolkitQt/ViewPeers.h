// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkitQt/ViewPeer.h>

#include <QPointF>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kw::qt {

/// Where a view's upper left corner is, seen from its superview's, y down.
QPointF upperLeftCorner(const NSView& subview);

/// The peers of a tree of views. Their widgets' events are filtered by the parent.
class ViewPeers {
public:
    /// `releaseFocus` takes the keyboard from a widget that will be hidden.
    ViewPeers(QWidget& parent, std::function<void(QWidget&)> releaseFocus);

    /// Makes those that are missing, and puts all where their views are, as they lie over each
    /// other.
    void update(NSView& root);
    /// Of a tree of views that leaves.
    void remove(const NSView& tree);
    /// Null where the view has none.
    QWidget* widgetOf(NSView* view) const;
    /// The view that is shown by a widget, or by one that this is in. Null for none.
    NSView* viewOf(const QWidget* widget) const;

private:
    struct Place;
    /// Null where the view has none.
    ViewPeer* make(NSView& view);
    /// Back to front.
    void collect(NSView& view, const Place& place, std::vector<Place>& places);
    void put(ViewPeer& peer, const Place& place);

    QWidget& m_parent;
    std::function<void(QWidget&)> m_releaseFocus;
    std::unordered_map<NSView*, std::unique_ptr<ViewPeer>> m_peers;
    unsigned m_updates = 0;
};

} // namespace kw::qt
