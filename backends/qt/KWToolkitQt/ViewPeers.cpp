// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewPeers.h>

#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkitQt/ButtonPeer.h>
#include <KWToolkitQt/FieldEditorPeer.h>

#include <QRegion>
#include <QWidget>

#include <cmath>
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

/// In the widget's coordinates.
struct ViewPeers::Place {
    QRectF area;
    QRectF visible; // what no superview cuts off
    bool isHidden = false;
};

ViewPeers::ViewPeers(QWidget& parent, std::function<void(QWidget&)> releaseFocus)
    : m_parent(parent)
    , m_releaseFocus(std::move(releaseFocus)) { }

void ViewPeers::collect(
    NSView& view, const Place& place, std::unordered_map<NSView*, Place>& places) {
    if (const ViewPeerFactory* const make = factoryFor(view)) {
        auto& peer = m_peers[&view];
        if (!peer) {
            peer = (*make)(view, m_parent);
            peer->widget().installEventFilter(&m_parent);
        }
        places.emplace(&view, place);
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
    std::unordered_map<NSView*, Place> places;
    collect(root, {area, area, root.isHidden()}, places);
    const unsigned update = ++m_updates;
    for (const auto& [view, place] : places) {
        // Hiding and disabling move the focus, and whoever is told of that may change anything.
        const auto peer = m_peers.find(view);
        if (peer != m_peers.end())
            put(*peer->second, *view, place);
        if (update != m_updates)
            return;
    }
}

void ViewPeers::put(ViewPeer& peer, const NSView& view, const Place& place) {
    QWidget& widget = peer.widget();
    if (place.isHidden) {
        if (!widget.isHidden()) {
            m_releaseFocus(widget);
            widget.hide();
        }
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
    if (const auto name = QString::fromStdString(view.accessibilityLabel());
        widget.accessibleName() != name)
        widget.setAccessibleName(name);
    if (widget.isHidden())
        widget.show();
    peer.update();
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
