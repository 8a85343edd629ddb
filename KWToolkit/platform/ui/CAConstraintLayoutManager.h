// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

namespace kw {

class CALayer;

/// Puts sublayers in their places.
class KW_EXPORT CALayoutManager : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    virtual void layoutSublayersOfLayer(CALayer& layer) = 0;
};

/// Lays sublayers out by their constraints, in a time that grows with their number alone.
///
/// A source is the first sublayer of that name; "superlayer" is the layer itself, with its bounds,
/// whatever a sublayer is called. A constraint of an unknown source, or with numbers that are not
/// finite, does not count.
///
/// One constraint on an axis moves a layer (or with `width` or `height` sizes it, about its lower
/// edge); two determine place and size. The newest count: of those on the same attribute the last
/// one added, of three attributes or more on an axis the last two. A size below 0 becomes 0, at the
/// place that the newest constraint says, and a layer that its transform turns keeps its size.
///
/// On a circle of sources the one that closes it counts with the place that it had before; circles
/// are entered in the order of the sublayers, x before y. A frame that is not finite is not set.
class KW_EXPORT CAConstraintLayoutManager final : public CALayoutManager {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void layoutSublayersOfLayer(CALayer& layer) override;
};

} // namespace kw
