// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/NSView.h>

#include <QAccessible>

#include <unordered_map>
#include <vector>

namespace kw::qt {

class ViewInterface;
class ViewPeers;
class ViewWidget;

/// Tells assistive technology of the views in a widget.
///
/// The children of the widget's interface, and of a group's, are the views in it that have a role;
/// what is in a view without one moves up to where that view would be. A view that a native widget
/// shows is told of by the widget's own interface, and so is a field while it is edited. Those know
/// no parent but the `ViewWidget`, so they are its children, each behind the group that it is in.
class ViewAccessibility {
public:
    ViewAccessibility(ViewWidget& widget, NSView& root, const ViewPeers& peers);
    ~ViewAccessibility();
    ViewAccessibility(const ViewAccessibility&) = delete;
    ViewAccessibility& operator=(const ViewAccessibility&) = delete;

    /// Soon tells what has changed, if anybody listens. Costs little: call it as often as views ask
    /// for a redraw.
    void update();
    /// Lets go of the view and of those in it.
    void viewWillGo(const NSView& view);

    /// What Qt calls to make the interface of a `ViewWidget`. Null for any other object.
    static QAccessibleInterface* make(const QString& className, QObject* object);

    // For the interfaces.
    ViewWidget& widget() const { return m_widget; }
    /// Of the widget (null) or a view, back to front.
    std::vector<QAccessibleInterface*> children(const NSView* view) const;
    QAccessibleInterface* parent(const NSView& view) const;
    /// The front-most in the widget (null) or a view at a point of the screen; null for none.
    QAccessibleInterface* childAt(const NSView* view, QPoint place) const;
    /// Null unless a view has the keyboard that is told of.
    QAccessibleInterface* focused() const;
    /// On the screen.
    QRect screenRect(const NSView& view) const;
    /// Whether a native widget is told of in the view's place.
    bool isReplaced(NSView& view) const { return peer(view) != nullptr; }
    QAccessible::State state(NSView& view) const;

private:
    QWidget* peer(NSView& view) const;
    QAccessibleInterface* interfaceOf(NSView& view) const;
    struct Children {
        std::vector<QAccessibleInterface*> list;
        bool withPeers;
        void append(const ViewAccessibility& owner, NSView& tree, bool isWithinChild);
    };
    void tellOf(NSView& tree);
    void tellFocus();

    ViewWidget& m_widget;
    NSView& m_root;
    const ViewPeers& m_peers;
    // Qt owns them.
    mutable std::unordered_map<const NSView*, ViewInterface*> m_interfaces;
    QAccessible::Id m_toldFocus = 0;
    bool m_isUpdatePosted = false;
};

} // namespace kw::qt
