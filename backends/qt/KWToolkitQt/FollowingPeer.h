// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkitQt/ViewPeer.h>

namespace kw::qt {

/// The peer of a `View` by a widget that is made with the view and the parent, shows with
/// `follow(view)` what the view holds, and does not use the view after `forgetView()`.
template <class View, class Widget>
class FollowingPeer final : public ViewPeer {
public:
    /// `std::bad_cast` where it is another kind of view.
    FollowingPeer(NSView& view, QWidget& parent)
        : m_view(dynamic_cast<View&>(view))
        , m_widget(*new Widget(m_view, parent)) { }
    ~FollowingPeer() override { m_widget.forgetView(); }

    QWidget& widget() override { return m_widget; }
    void update() override { m_widget.follow(m_view); }

private:
    View& m_view;
    Widget& m_widget;
};

} // namespace kw::qt
