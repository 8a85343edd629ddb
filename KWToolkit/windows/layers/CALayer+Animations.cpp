// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/windows/layers/CALayer+Animations.h>

#include <utility>

namespace kw {

namespace {

constexpr const char* keys[] = {
    "onOrderIn",
    "onOrderOut",
    "sublayers",
    "contents",
    "bounds",
    "frame",
    "origin",
    "position",
    "backgroundColor",
    "borderColor",
    "contentsScale",
};

} // namespace

void removeAllImplicitAnimations(CALayer& layer) {
    CALayer::Actions actions;
    for (const char* const key : keys)
        actions.emplace(key, CAAction::null());
    layer.setActions(std::move(actions));
}

} // namespace kw
