// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

namespace kw {

/// A shape of the mouse pointer. Main thread.
class KW_EXPORT NSCursor {
public:
    enum class Shape { arrow, iBeam, pointingHand };

    static constexpr NSCursor arrowCursor() { return NSCursor(Shape::arrow); }
    static constexpr NSCursor IBeamCursor() { return NSCursor(Shape::iBeam); }
    static constexpr NSCursor pointingHandCursor() { return NSCursor(Shape::pointingHand); }

    constexpr Shape shape() const { return m_shape; }
    /// Shows it over the view that the pointer is in.
    void set() const;

    friend bool operator==(const NSCursor&, const NSCursor&) = default;

private:
    constexpr explicit NSCursor(Shape shape)
        : m_shape(shape) { }

    Shape m_shape;
};

} // namespace kw
