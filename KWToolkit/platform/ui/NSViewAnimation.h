// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/NSAnimation.h>

#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kw {

class NSWindow;

// The keys of a description.
inline constexpr const char* NSViewAnimationTargetKey = "NSViewAnimationTargetKey"; ///< an object
inline constexpr const char* NSViewAnimationEffectKey = "NSViewAnimationEffectKey"; ///< a text
// The effects.
/// Shows the window at the beginning, and lets it appear up to its `alphaValue`.
inline constexpr const char* NSViewAnimationFadeInEffect = "NSViewAnimationFadeInEffect";
/// Lets the window disappear, and hides it at the end.
inline constexpr const char* NSViewAnimationFadeOutEffect = "NSViewAnimationFadeOutEffect";

/// What is to happen to a window.
using NSViewAnimationDescription = std::map<std::string, std::variant<WeakReference, std::string>>;

/// Fades windows. The alpha value of none is changed, but how much of it is seen. One that is owned
/// by a shared pointer lives at least as long as the animation; one that is gone is left out. What
/// a description says that is not above has no effect. Main thread.
class KW_EXPORT NSViewAnimation : public NSAnimation {
public:
    explicit NSViewAnimation(std::vector<NSViewAnimationDescription> animations);

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::vector<NSViewAnimationDescription>& viewAnimations() const { return m_animations; }

    void startAnimation() override;

protected:
    void setCurrentProgress(double progress) override;

private:
    std::vector<NSViewAnimationDescription> m_animations;
    std::vector<std::shared_ptr<NSObject>> m_owners; // of the targets
};

} // namespace kw
