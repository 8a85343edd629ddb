// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/HoverTracker.h>

#include <KWToolkit/platform/ui/NSView.h>

#include <algorithm>
#include <utility>

namespace kw {

namespace {

using Areas = std::vector<std::shared_ptr<NSTrackingArea>>;

void appendAreas(const NSView& view, Areas& areas) {
    areas.insert(areas.end(), view.trackingAreas().begin(), view.trackingAreas().end());
    for (const auto& subview : view.subviews())
        appendAreas(*subview, areas);
}

/// `point` is in the superview's coordinates.
void appendAreasAt(const NSView& view, NSPoint point, bool isKeyWindow, Areas& areas) {
    if (view.isHidden() || !NSPointInRect(point, view.frame()))
        return;
    const NSPoint place = view.convertFromSuperview(point);
    for (const auto& area : view.trackingAreas()) {
        const bool isActive = (area->options() & NSTrackingActiveAlways)
            || (isKeyWindow && (area->options() & NSTrackingActiveInKeyWindow));
        if (isActive && NSPointInRect(place, area->rect()))
            areas.push_back(area);
    }
    for (const auto& subview : view.subviews())
        appendAreasAt(*subview, place, isKeyWindow, areas);
}

bool contains(const Areas& areas, const std::shared_ptr<NSTrackingArea>& area) {
    return std::ranges::find(areas, area) != areas.end();
}

auto findOwner(Areas& areas, const std::shared_ptr<NSResponder>& owner) {
    return std::ranges::find_if(areas, [&](const auto& area) { return area->owner() == owner; });
}

} // namespace

std::shared_ptr<NSResponder> NSTrackingArea::owner() const {
    return std::dynamic_pointer_cast<NSResponder>(m_owner.lock());
}

void HoverTracker::mouseIsAt(NSView& root, bool isKeyWindow, const NSEvent& event) {
    Areas inside;
    appendAreasAt(root, event.locationInWindow, isKeyWindow, inside);
    update(root, std::move(inside), event);
}

void HoverTracker::mouseIsAway(NSView& root, const NSEvent& event) { update(root, {}, event); }

void HoverTracker::update(NSView& root, Areas inside, const NSEvent& event) {
    Areas all;
    appendAreas(root, all);
    Areas entered;
    std::ranges::copy_if(inside, std::back_inserter(entered),
        [this](const auto& area) { return !contains(m_inside, area); });
    Areas stayed;
    std::ranges::copy_if(inside, std::back_inserter(stayed),
        [this](const auto& area) { return contains(m_inside, area); });
    Areas exited;
    for (const auto& area : std::exchange(m_inside, std::move(inside))) {
        if (contains(stayed, area))
            continue;
        if (contains(all, area)) {
            exited.push_back(area);
            continue;
        }
        // Removed. What its owner put in its place takes over; an owner without areas left it.
        const auto owner = area->owner();
        const auto* const view = dynamic_cast<const NSView*>(owner.get());
        if (!owner)
            continue;
        if (view && contains(view->trackingAreas(), area)) {
            exited.push_back(area); // together with its view
            continue;
        }
        if (const auto heir = findOwner(entered, owner); heir != entered.end()) {
            stayed.push_back(*heir);
            entered.erase(heir);
        } else if (findOwner(all, owner) != all.end()) {
            exited.push_back(area);
        }
    }

    const auto tell = [&event](const Areas& areas, std::uint32_t option, NSEvent::Type type,
                          void (NSResponder::*message)(const NSEvent&)) {
        NSEvent told = event;
        told.type = type;
        for (const auto& area : areas) {
            const auto owner = area->options() & option ? area->owner() : nullptr;
            if (owner)
                ((*owner).*message)(told);
        }
    };
    tell(exited, NSTrackingMouseEnteredAndExited, NSEvent::Type::mouseExited,
        &NSResponder::mouseExited);
    tell(entered, NSTrackingMouseEnteredAndExited, NSEvent::Type::mouseEntered,
        &NSResponder::mouseEntered);
    if (event.type == NSEvent::Type::mouseMoved)
        tell(stayed, NSTrackingMouseMoved, NSEvent::Type::mouseMoved, &NSResponder::mouseMoved);
}

} // namespace kw
