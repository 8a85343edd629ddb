// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewPeers.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkitQt/ButtonPeer.h>
#include <KWToolkitQt/FieldEditorPeer.h>

#include <QPointer>
#include <QRegion>
#include <QWidget>

#include <cmath>
#include <ranges>
#include <utility>
#include <vector>

namespace kw::qt {

namespace {

using Factories = std::unordered_map<const Class*, ViewPeerFactory>;

Factories& factories() {
    static auto& object = *new Factories {
        {&NSTextView::classObject(), makeFieldEditorPeer},
        {&NSButton::classObject(), makeButtonPeer},
    };
    return object;
}

/// Of widgets with one parent; each lies over the one before.
void stack(const QObjectList& siblings, const std::vector<QWidget*>& widgets) {
    auto next = widgets.begin();
    for (const QObject* const sibling : siblings) {
        if (next != widgets.end() && *next == sibling)
            ++next;
    }
    if (next == widgets.end())
        return;
    QWidget* above = nullptr;
    for (QWidget* const widget : widgets | std::views::reverse) {
        if (above)
            widget->stackUnder(above);
        above = widget;
    }
}

const ViewPeerFactory* factoryFor(const NSView& view) {
    for (const Class* cls = &view.isa(); cls; cls = cls->superclass()) {
        if (const auto found = factories().find(cls); found != factories().end())
            return &found->second;
    }
    return nullptr;
}

/// Each edge at the nearest pixel.
QRect toPixels(const QRectF& rect) {
    const auto round = [](double value) { return static_cast<int>(std::lround(value)); };
    return {QPoint(round(rect.left()), round(rect.top())),
        QPoint(round(rect.right()) - 1, round(rect.bottom()) - 1)};
}

} // namespace

ViewPeer::~ViewPeer() = default;

void registerViewPeer(const Class& viewClass, ViewPeerFactory factory) {
    factories()[&viewClass] = std::move(factory);
}

QPointF upperLeftCorner(const NSView& subview) {
    const NSRect frame = subview.frame();
    const NSView& superview = *subview.superview();
    return {NSMinX(frame),
        superview.isFlipped() ? NSMinY(frame) : superview.bounds().size.height - NSMaxY(frame)};
}

/// In the parent's coordinates.
struct ViewPeers::Place {
    QRectF area;
    QRectF visible; // what no superview cuts off
    bool isHidden = false;
    NSView* view = nullptr;
    QWidget* widget = nullptr;
};

ViewPeers::ViewPeers(QWidget& parent, std::function<void(QWidget&)> releaseFocus)
    : m_parent(parent)
    , m_releaseFocus(std::move(releaseFocus)) { }

ViewPeer* ViewPeers::make(NSView& view) {
    if (const auto found = m_peers.find(&view); found != m_peers.end())
        return found->second.get();
    const ViewPeerFactory* const factory = factoryFor(view);
    std::unique_ptr<ViewPeer> peer;
    if (factory)
        callGuarded([&] { peer = (*factory)(view, m_parent); });
    if (!peer)
        return nullptr;
    peer->widget().installEventFilter(&m_parent);
    return (m_peers[&view] = std::move(peer)).get();
}

void ViewPeers::collect(NSView& view, const Place& place, std::vector<Place>& places) {
    if (ViewPeer* const peer = make(view)) {
        places.push_back(place);
        places.back().view = &view;
        places.back().widget = &peer->widget();
    }
    for (const auto& subview : view.subviews()) {
        const NSSize size = subview->frame().size;
        const QRectF area(
            place.area.topLeft() + upperLeftCorner(*subview), QSizeF(size.width, size.height));
        collect(
            *subview, {area, area & place.visible, place.isHidden || subview->isHidden()}, places);
    }
}

void ViewPeers::update(NSView& root) {
    const QRectF area(0, 0, root.frame().size.width, root.frame().size.height);
    std::vector<Place> places;
    collect(root, {area, area, root.isHidden()}, places);
    std::vector<QWidget*> widgets;
    widgets.reserve(places.size());
    for (const Place& place : places)
        widgets.push_back(place.widget);
    stack(m_parent.children(), widgets);
    const unsigned update = ++m_updates;
    for (const Place& place : places) {
        // Hiding and disabling move the focus, and whoever is told of that may change anything.
        const auto peer = m_peers.find(place.view);
        if (peer != m_peers.end())
            put(*peer->second, place);
        if (update != m_updates)
            return;
    }
}

void ViewPeers::put(ViewPeer& peer, const Place& place) {
    QWidget& widget = peer.widget();
    if (place.isHidden) {
        if (widget.isHidden())
            return;
        const QPointer<QWidget> alive(&widget);
        m_releaseFocus(widget);
        if (alive)
            widget.hide();
        return;
    }
    const QRect frame = toPixels(place.area);
    if (widget.geometry() != frame)
        widget.setGeometry(frame);
    // Out of sight it is not hidden: it keeps the focus. An empty mask would be none.
    const QRect visible = toPixels(place.visible).translated(-frame.topLeft());
    const QRect seen = visible.isEmpty() ? QRect(-1, -1, 1, 1) : visible;
    if (const QRegion mask = seen == widget.rect() ? QRegion() : QRegion(seen);
        mask != widget.mask())
        widget.setMask(mask);
    callGuarded([&] {
        if (const auto name = QString::fromStdString(place.view->accessibilityLabel());
            widget.accessibleName() != name)
            widget.setAccessibleName(name);
    });
    if (widget.isHidden())
        widget.show();
    callGuarded([&] { peer.update(); });
}

void ViewPeers::remove(const NSView& tree) {
    std::vector<std::unique_ptr<ViewPeer>> gone;
    for (auto& [view, peer] : m_peers) {
        if (view->isDescendantOf(tree))
            gone.push_back(std::move(peer));
    }
    std::erase_if(m_peers, [](const auto& entry) { return !entry.second; });
    for (auto& peer : gone) {
        QWidget& widget = peer->widget();
        peer.reset();
        m_releaseFocus(widget);
        widget.hide();
        widget.deleteLater();
    }
}

QWidget* ViewPeers::widgetOf(NSView* view) const {
    const auto peer = m_peers.find(view);
    return peer == m_peers.end() ? nullptr : &peer->second->widget();
}

NSView* ViewPeers::viewOf(const QWidget* widget) const {
    while (widget && widget->parentWidget() != &m_parent)
        widget = widget->parentWidget();
    for (const auto& [view, peer] : m_peers) {
        if (&peer->widget() == widget)
            return view;
    }
    return nullptr;
}

} // namespace kw::qt
