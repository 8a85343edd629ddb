// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace kw {

class NSResponder;

enum NSTrackingAreaOptions : std::uint32_t {
    NSTrackingMouseEnteredAndExited = 0x01,
    NSTrackingMouseMoved = 0x02,
    NSTrackingActiveInKeyWindow = 0x20,
    NSTrackingActiveAlways = 0x80,
};

/// A part of a view whose owner is told when the mouse comes, moves and goes.
class NSTrackingArea {
public:
    /// `rect` is in the view's coordinates. What of it other views' bounds cut off does not count.
    /// The owner is not owned.
    NSTrackingArea(NSRect rect, std::uint32_t options, WeakReference owner)
        : m_rect(rect)
        , m_options(options)
        , m_owner(std::move(owner)) { }

    NSRect rect() const { return m_rect; }
    std::uint32_t options() const { return m_options; }
    /// Null once it is gone, or where it takes no events.
    std::shared_ptr<NSResponder> owner() const;

private:
    NSRect m_rect;
    std::uint32_t m_options;
    WeakReference m_owner;
};

} // namespace kw
