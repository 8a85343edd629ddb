// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSView.h>

#include <KWToolkit/platform/ui/CALayer.h>
#include <KWToolkit/platform/ui/NSTrackingArea.h>
#include <KWToolkit/platform/ui/NSWindow.h>

#include <algorithm>
#include <ranges>
#include <utility>

namespace kw {

ViewHost::~ViewHost() = default;

NSView::NSView(NSRect frame)
    : m_frame(frame) { }

NSView::~NSView() {
    if (ViewHost* const shownBy = host())
        shownBy->viewWillGo(*this);
    if (m_layer)
        m_layer->setHostView(nullptr);
    for (const auto& view : m_subviews) {
        view->m_superview = nullptr;
        view->setNextResponder(nullptr);
    }
}

Class& NSView::classObject() {
    static auto& object = *new Class("NSView", NSResponder::classObject());
    return object;
}

void NSView::setFrame(NSRect frame) {
    if (frame == m_frame)
        return;
    NSView* const container = m_superview ? m_superview : this;
    container->setNeedsDisplayInRect(m_superview ? m_frame : bounds());
    const NSSize formerSize = std::exchange(m_frame, frame).size;
    container->setNeedsDisplayInRect(m_superview ? m_frame : bounds());
    setNeedsPeerUpdate();
    if (frame.size != formerSize) {
        resizeSubviewsWithOldSize(formerSize);
        updateTrackingAreas();
    }
    // Last: whoever observes the layer may let go of the view.
    if (m_layer && frame.size != formerSize)
        m_layer->fillHostView();
}

void NSView::addSubview(std::shared_ptr<NSView> view) {
    if (!view)
        return;
    for (const NSView* ancestor = this; ancestor; ancestor = ancestor->m_superview) {
        if (ancestor == view.get())
            return;
    }
    view->removeFromSuperview();
    view->m_superview = this;
    m_subviews.push_back(view);
    view->setNextResponder(this);
    view->setNeedsDisplay();
    setNeedsPeerUpdate();
}

void NSView::removeFromSuperview() {
    if (!m_superview)
        return;
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    if (ViewHost* const shownBy = host())
        shownBy->viewWillGo(*this);
    // Whoever was told may have removed it.
    if (!m_superview)
        return;
    NSView* const superview = std::exchange(m_superview, nullptr);
    superview->setNeedsDisplayInRect(m_frame);
    superview->setNeedsPeerUpdate();
    setNextResponder(nullptr);
    std::erase_if(superview->m_subviews, [this](const auto& view) { return view.get() == this; });
}

void NSView::setHidden(bool hidden) {
    if (std::exchange(m_isHidden, hidden) == hidden)
        return;
    if (m_superview)
        m_superview->setNeedsDisplayInRect(m_frame);
    setNeedsPeerUpdate();
}

bool NSView::isDescendantOf(const NSView& view) const {
    const NSView* ancestor = this;
    while (ancestor && ancestor != &view)
        ancestor = ancestor->m_superview;
    return ancestor != nullptr;
}

NSView* NSView::viewWithIdentifier(const std::string& identifier) {
    if (identifier.empty())
        return nullptr;
    if (identifier == m_identifier)
        return this;
    for (const auto& view : m_subviews) {
        if (NSView* const found = view->viewWithIdentifier(identifier))
            return found;
    }
    return nullptr;
}

void NSView::resizeSubviewsWithOldSize(NSSize) { }
void NSView::updateTrackingAreas() { }
void NSView::awakeFromNib() { }
bool NSView::setAccessibilityValue(const std::string&) { return false; }
bool NSView::accessibilityPerformPress() { return false; }

void NSView::addTrackingArea(std::shared_ptr<NSTrackingArea> area) {
    if (!area || std::ranges::find(m_trackingAreas, area) != m_trackingAreas.end())
        return;
    m_trackingAreas.push_back(std::move(area));
    setNeedsPeerUpdate();
}

void NSView::removeTrackingArea(const std::shared_ptr<NSTrackingArea>& area) {
    if (std::erase(m_trackingAreas, area) > 0)
        setNeedsPeerUpdate();
}

void NSView::drawRect(NSGraphicsContext&, NSRect) { }

void NSView::setNeedsDisplayInRect(NSRect rect) {
    const NSRect visible = NSIntersectionRect(rect, bounds());
    if (NSIsEmptyRect(visible))
        return;
    if (!m_superview) {
        if (m_host)
            m_host->setNeedsDisplayInRect(visible);
        return;
    }
    m_superview->setNeedsDisplayInRect(convertRectToSuperview(visible));
}

void NSView::setLayer(std::shared_ptr<CALayer> layer) {
    if (layer == m_layer)
        return;
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    if (layer) {
        if (NSView* const former = layer->hostView())
            former->setLayer(nullptr);
        layer->removeFromSuperlayer();
        // An action may have put it elsewhere.
        if (layer->superlayer() || layer->hostView())
            return;
    }
    if (m_layer)
        m_layer->setHostView(nullptr);
    m_layer = std::move(layer);
    setNeedsDisplay();
    if (const auto shown = m_layer) {
        shown->setHostView(this);
        shown->fillHostView();
    }
}

void NSView::drawLayer(NSGraphicsContext& context) const {
    if (m_layer)
        m_layer->draw(context);
}

NSView* NSView::hitTest(NSPoint point) {
    if (m_isHidden || !NSPointInRect(point, m_frame))
        return nullptr;
    const NSPoint inside = convertFromSuperview(point);
    for (const auto& view : m_subviews | std::views::reverse) {
        if (NSView* const hit = view->hitTest(inside))
            return hit;
    }
    return this;
}

bool NSView::performKeyEquivalent(const NSEvent& event) {
    // A copy: whoever takes the key may change the tree.
    const auto subviews = m_subviews;
    return std::ranges::any_of(subviews | std::views::reverse, [&event](const auto& view) {
        return !view->isHidden() && view->performKeyEquivalent(event);
    });
}

NSPoint NSView::convertToSuperview(NSPoint point) const {
    const bool superviewIsFlipped = m_superview && m_superview->isFlipped();
    const double y = isFlipped() == superviewIsFlipped ? point.y : m_frame.size.height - point.y;
    return {m_frame.origin.x + point.x, m_frame.origin.y + y};
}

NSPoint NSView::convertFromSuperview(NSPoint point) const {
    const bool superviewIsFlipped = m_superview && m_superview->isFlipped();
    const double y = point.y - m_frame.origin.y;
    return {point.x - m_frame.origin.x,
        isFlipped() == superviewIsFlipped ? y : m_frame.size.height - y};
}

NSPoint NSView::convertFromWindow(NSPoint point) const {
    return convertFromSuperview(m_superview ? m_superview->convertFromWindow(point) : point);
}

// Of two opposite corners, whichever comes out lower is the origin.

NSRect NSView::convertRectToSuperview(const NSRect& rect) const {
    const NSPoint one = convertToSuperview(rect.origin);
    const NSPoint other = convertToSuperview({NSMaxX(rect), NSMaxY(rect)});
    return {{std::min(one.x, other.x), std::min(one.y, other.y)}, rect.size};
}

NSRect NSView::convertRectFromSuperview(const NSRect& rect) const {
    const NSPoint one = convertFromSuperview(rect.origin);
    const NSPoint other = convertFromSuperview({NSMaxX(rect), NSMaxY(rect)});
    return {{std::min(one.x, other.x), std::min(one.y, other.y)}, rect.size};
}

NSRect NSView::visibleRect() const {
    if (m_isHidden)
        return {};
    return m_superview
        ? NSIntersectionRect(bounds(), convertRectFromSuperview(m_superview->visibleRect()))
        : bounds();
}

void NSView::setHost(ViewHost* host) {
    if (m_host && m_host != host)
        m_host->viewWillGo(*this);
    m_host = host;
    setNextResponder(host ? &host->window() : nullptr);
}

NSWindow* NSView::window() const {
    ViewHost* const shownBy = host();
    return shownBy ? &shownBy->window() : nullptr;
}

void NSView::setNeedsPeerUpdate() {
    if (ViewHost* const shownBy = host())
        shownBy->viewsChanged();
}

ViewHost* NSView::host() const {
    const NSView* root = this;
    while (root->m_superview)
        root = root->m_superview;
    return root->m_host;
}

} // namespace kw
