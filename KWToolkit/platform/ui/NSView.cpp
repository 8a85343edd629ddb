// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSView.h>

#include <KWToolkit/platform/ui/CALayer.h>

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
    for (const auto& view : m_subviews)
        view->m_superview = nullptr;
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
    m_subviews.push_back(std::move(view));
    m_subviews.back()->setNeedsDisplay();
}

void NSView::removeFromSuperview() {
    if (!m_superview)
        return;
    if (ViewHost* const shownBy = host())
        shownBy->viewWillGo(*this);
    NSView* const superview = std::exchange(m_superview, nullptr);
    superview->setNeedsDisplayInRect(m_frame);
    // Last: this may have been the only owner.
    std::erase_if(superview->m_subviews, [this](const auto& view) { return view.get() == this; });
}

void NSView::setHidden(bool hidden) {
    if (std::exchange(m_isHidden, hidden) != hidden && m_superview)
        m_superview->setNeedsDisplayInRect(m_frame);
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
    // Of two opposite corners, whichever comes out lower is the origin.
    const NSPoint one = convertToSuperview(visible.origin);
    const NSPoint other = convertToSuperview({NSMaxX(visible), NSMaxY(visible)});
    m_superview->setNeedsDisplayInRect(NSMakeRect(std::min(one.x, other.x),
        std::min(one.y, other.y), visible.size.width, visible.size.height));
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

NSResponder* NSView::nextResponder() const {
    NSResponder* const set = NSResponder::nextResponder();
    return set ? set : m_superview;
}

ViewHost* NSView::host() const {
    const NSView* root = this;
    while (root->m_superview)
        root = root->m_superview;
    return root->m_host;
}

} // namespace kw
