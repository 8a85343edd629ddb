// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSAnimation.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/ui/CAMediaTimingFunction.h>

#include <algorithm>
#include <cmath>

namespace kw {

namespace {

constexpr double framesPerSecond = 60;

bool honors = false;

std::string_view nameOf(NSAnimationCurve curve) {
    switch (curve) {
    case NSAnimationCurve::easeIn:
        return kCAMediaTimingFunctionEaseIn;
    case NSAnimationCurve::easeOut:
        return kCAMediaTimingFunctionEaseOut;
    case NSAnimationCurve::linear:
        return kCAMediaTimingFunctionLinear;
    default:
        return kCAMediaTimingFunctionEaseInEaseOut;
    }
}

} // namespace

bool NSAnimation::honorsReducedMotion() { return honors; }
void NSAnimation::setHonorsReducedMotion(bool isHonored) { honors = isHonored; }

Class& NSAnimation::classObject() {
    static auto& object = *new Class("NSAnimation", NSObject::classObject(),
        {
            method("startAnimation", &NSAnimation::startAnimation),
            method("stopAnimation", &NSAnimation::stopAnimation),
        });
    return object;
}

double NSAnimation::currentValue() const {
    return CAMediaTimingFunction::functionWithName(nameOf(m_curve)).progressAt(m_progress);
}

void NSAnimation::startAnimation() {
    if (m_isAnimating)
        return;
    const auto alive = weak_from_this().lock();
    const bool isOver = !(m_duration > 0) || !std::isfinite(m_duration)
        || (honors && Platform::workspace().accessibilityDisplayShouldReduceMotion());
    if (isOver) {
        setCurrentProgress(1);
        return;
    }
    m_isAnimating = true;
    m_begin = Platform::clock().now();
    m_frame = 0;
    const auto run = ++m_run;
    setCurrentProgress(0);
    // What shows it may have stopped it, and started it anew.
    if (m_isAnimating && m_run == run)
        scheduleFrame(0);
}

/// On a grid of time, so that what is late does not delay what follows.
void NSAnimation::scheduleFrame(double elapsed) {
    m_frame = std::max(m_frame + 1, std::floor(elapsed * framesPerSecond) + 1);
    const double due = std::min(m_frame / framesPerSecond, m_duration);
    Platform::runLoop().callAfter(m_begin + due - Platform::clock().now(),
        [weak = WeakReference(*this), owner = weak_from_this().lock(), run = m_run] {
            const auto self = std::static_pointer_cast<NSAnimation>(weak.lock());
            if (self && self->m_isAnimating && self->m_run == run)
                self->showFrame();
        });
}

void NSAnimation::showFrame() {
    const double elapsed = Platform::clock().now() - m_begin;
    // What is scheduled for the end is not to miss it by a rounding.
    if (elapsed > m_duration - 1e-6) {
        m_isAnimating = false;
        setCurrentProgress(1);
        return;
    }
    const auto run = m_run;
    setCurrentProgress(elapsed / m_duration);
    if (m_isAnimating && m_run == run)
        scheduleFrame(elapsed);
}

} // namespace kw
