// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What of a layer can be animated: its values, and one table of the operations on them.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGColor.h>
#include <KWToolkit/platform/graphics/CGImage.h>
#include <KWToolkit/platform/graphics/CGPattern.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <optional>
#include <string_view>
#include <variant>

namespace kw {

/// A layer's picture, and the former one while it fades.
struct CAContents {
    CGImageRef image;
    CGImageRef former;
    double progress = 1; ///< 0 shows the former picture alone, 1 the new one
    friend bool operator==(const CAContents&, const CAContents&) = default;
};

/// A layer's values, as they are set or as they are on the screen.
struct KW_EXPORT CALayerValues {
    NSRect bounds;
    NSPoint position;
    NSPoint anchorPoint {0.5, 0.5};
    CGAffineTransform transform;
    double opacity = 1;
    double hidden = 0; ///< 1 is hidden; what is between them fades
    std::optional<CGColor> backgroundColor;
    std::optional<CGColor> borderColor = CGColor(CGColorSpace::deviceGray, {0, 1});
    double borderWidth = 0;
    double cornerRadius = 0;
    CAContents contents;
    double contentsScale = 1;

    /// From the layer's coordinates to its superlayer's. Not finite where the values are too large.
    CGAffineTransform toSuperlayer() const;
    /// What the bounds cover in the superlayer: the smallest rectangle around them.
    NSRect frame() const;
};

/// A value of any of the properties; none of them where it is empty.
using CAValue = std::variant<std::monostate, double, NSPoint, NSRect, CGAffineTransform,
    std::optional<CGColor>, CAContents>;

/// A property that can be animated. Values of another type than the property's must not be passed.
struct KW_EXPORT CALayerProperty {
    struct Traits {
        bool isAnimatedByDefault = true;
        bool movesFrame = false;
    };

    std::string_view key;
    Traits traits;
    CAValue (*get)(const CALayerValues& values);
    void (*set)(CALayerValues& values, const CAValue& value);
    /// What lies between two values. Numbers and their tuples, also transforms, are interpolated
    /// component by component, colors in RGB, where no color is the other one without alpha; a
    /// pattern takes the other's place at once. Pictures are crossfaded.
    CAValue (*interpolate)(const CAValue& from, const CAValue& to, double progress);

    /// Null for a key that is none.
    static const CALayerProperty* find(std::string_view key);
};

/// Whether all numbers of a value are finite. Colors count as such; drawing them bounds them.
KW_EXPORT bool isFinite(const CAValue& value);

} // namespace kw
