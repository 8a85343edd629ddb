// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/layers/CALayer+Layout.h>

namespace kw {

namespace {

using enum CAConstraintAttribute;

void constrain(CALayer& layer, CAConstraintAttribute attribute, const std::string& source,
    CAConstraintAttribute sourceAttribute, double offset) {
    layer.addConstraint({attribute, source, sourceAttribute, 1, offset});
}

} // namespace

void centerHorizontallyRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, midX, source, midX, offset);
}

void centerVerticallyRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, midY, source, midY, offset);
}

void centerVerticallyAndHorizontallyRelativeTo(
    CALayer& layer, const std::string& source, double xOffSet, double yOffSet) {
    centerHorizontallyRelativeTo(layer, source, xOffSet);
    centerVerticallyRelativeTo(layer, source, yOffSet);
}

void centerVerticallyAndHorizontallyRelativeTo(CALayer& layer, const std::string& source) {
    centerVerticallyAndHorizontallyRelativeTo(layer, source, 0, 0);
}

void anchorTopRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, maxY, source, maxY, offset);
}

void anchorBottomRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, minY, source, minY, offset);
}

void anchorRightRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, maxX, source, maxX, offset);
}

void anchorLeftRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, minX, source, minX, offset);
}

void stayOnLeftRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, maxX, source, minX, offset);
}

void stayOnRightRelativeTo(CALayer& layer, const std::string& source, double offset) {
    constrain(layer, minX, source, maxX, offset);
}

// Deliberate: nothing is centered and the source does not matter.
void centerHorizontallyRelativeTo(
    CALayer& layer, const std::string&, double leftOffset, double rightOffSet) {
    constrain(layer, minX, "superlayer", minX, leftOffset);
    constrain(layer, maxX, "superlayer", maxX, rightOffSet);
}

} // namespace kw
