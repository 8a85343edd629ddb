// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSViewAnimation.h>

#include <KWToolkit/platform/ui/NSWindow.h>

#include <utility>

namespace kw {

namespace {

/// What a description has for a key; the type's nothing where it has none.
template <class T>
T valueOf(const NSViewAnimationDescription& description, const char* key) {
    const auto found = description.find(key);
    const T* const value = found == description.end() ? nullptr : std::get_if<T>(&found->second);
    return value ? *value : T();
}

std::shared_ptr<NSWindow> windowOf(const NSViewAnimationDescription& description) {
    return std::dynamic_pointer_cast<NSWindow>(
        valueOf<WeakReference>(description, NSViewAnimationTargetKey).lock());
}

} // namespace

NSViewAnimation::NSViewAnimation(std::vector<NSViewAnimationDescription> animations)
    : m_animations(std::move(animations)) {
    for (const auto& animation : m_animations) {
        if (const auto window = windowOf(animation))
            m_owners.push_back(window->weak_from_this().lock());
    }
}

Class& NSViewAnimation::classObject() {
    static auto& object = *new Class("NSViewAnimation", NSAnimation::classObject());
    return object;
}

void NSViewAnimation::startAnimation() {
    if (isAnimating())
        return;
    for (const auto& animation : m_animations) {
        const auto window = windowOf(animation);
        if (!window)
            continue;
        window->beginFade(*this);
        if (valueOf<std::string>(animation, NSViewAnimationEffectKey)
            == NSViewAnimationFadeInEffect) {
            window->setFade(0, *this);
            window->orderFront();
        }
    }
    NSAnimation::startAnimation();
}

void NSViewAnimation::setCurrentProgress(double progress) {
    NSAnimation::setCurrentProgress(progress);
    for (const auto& animation : m_animations) {
        const auto window = windowOf(animation);
        const auto effect = valueOf<std::string>(animation, NSViewAnimationEffectKey);
        if (window && effect == NSViewAnimationFadeInEffect) {
            window->setFade(currentValue(), *this);
        } else if (window && effect == NSViewAnimationFadeOutEffect) {
            if (progress >= 1)
                window->orderOut();
            // Once it is hidden, it can be shown again as it was.
            window->setFade(progress >= 1 ? 1 : 1 - currentValue(), *this);
        }
    }
}

} // namespace kw
