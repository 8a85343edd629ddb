// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <cstdint>

namespace kw {

enum class NSAnimationCurve { easeInOut, easeIn, easeOut, linear };

/// Something that takes its time: the run loop of the main thread leads its progress from 0 to 1.
/// One that is owned by a shared pointer lives on until it is over; any other ends with its owner.
/// It never waits. Main thread.
class KW_EXPORT NSAnimation : public NSObject {
public:
    /// In seconds. With a duration of 0, less, or no finite number it is over once it is started.
    explicit NSAnimation(
        double duration = 0.5, NSAnimationCurve curve = NSAnimationCurve::easeInOut)
        : m_duration(duration)
        , m_curve(curve) { }

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    double duration() const { return m_duration; }
    void setDuration(double seconds) { m_duration = seconds; }
    NSAnimationCurve animationCurve() const { return m_curve; }
    void setAnimationCurve(NSAnimationCurve curve) { m_curve = curve; }

    /// From the beginning; nothing while it runs.
    virtual void startAnimation();
    /// Leaves everything as it is just now.
    void stopAnimation() { m_isAnimating = false; }
    bool isAnimating() const { return m_isAnimating; }
    /// How much of the time has passed, from 0 to 1.
    double currentProgress() const { return m_progress; }
    /// How far that is on the curve.
    double currentValue() const;

    /// Whether animations are over as soon as they are started while the desktop asks for reduced
    /// motion. For the process; false unless it is set. See `CATransaction` for layers.
    static bool honorsReducedMotion();
    static void setHonorsReducedMotion(bool honors);

protected:
    /// Called sixty times a second, but never for what is late, and with 1 at the end.
    virtual void setCurrentProgress(double progress) { m_progress = progress; }

private:
    void scheduleFrame(double elapsed);
    void showFrame();

    double m_duration;
    NSAnimationCurve m_curve;
    bool m_isAnimating = false;
    double m_progress = 0;
    double m_begin = 0;
    double m_frame = 0; // the number of the next one
    std::uint64_t m_run = 0; // how often it was started
};

} // namespace kw
