// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/Class.h>

#include <functional>
#include <memory>

class QWidget;

namespace kw {
class NSView;
}

namespace kw::qt {

/// Shows a view by a widget that lies over its frame. Made when the view comes to a `ViewWidget`,
/// destroyed when it leaves. Main thread.
class KW_EXPORT ViewPeer {
public:
    virtual ~ViewPeer();
    /// Always the same one, a child of the parent that the factory was given. The `ViewWidget`
    /// places it, shows it and hides it, and deletes it a little later than the peer: it may be the
    /// widget itself that makes its view go. From then on it must not use the peer or the view.
    virtual QWidget& widget() = 0;
    /// Makes the widget show what the view holds. Called whenever some view has changed, so it
    /// compares first, and calls nobody else.
    virtual void update() = 0;
};

using ViewPeerFactory = std::function<std::unique_ptr<ViewPeer>(NSView& view, QWidget& parent)>;

/// Shows views of a class, and of those that inherit it, by peers of this kind, wherever they are
/// shown from now on. The nearest class counts, and what is registered for it last. A widget that
/// is a Qt tab stop is one beside its `ViewWidget`: give it `Qt::ClickFocus`.
KW_EXPORT void registerViewPeer(const Class& viewClass, ViewPeerFactory factory);

} // namespace kw::qt
