// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/CAMediaTimingFunction.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace kw {

class CALayer;

/// Changes to layers that take effect together, and how they are animated. Main thread.
///
/// A change outside of any transaction begins an implicit one, which the run loop's next pass
/// commits. When the outermost transaction is committed the layers that need it are laid out under
/// its settings, and the animations that were added meanwhile begin. Transactions within others
/// begin with the settings of the enclosing one and leave it untouched.
class KW_EXPORT CATransaction {
public:
    static void begin();
    /// Ends what `begin` began; without one, does nothing.
    static void commit();
    /// Commits the implicit transaction now, or as soon as those begun within it are committed.
    static void flush();

    // The settings of the innermost transaction. Where there is none, setting one begins an
    // implicit transaction.

    /// In seconds, of animations that have none of their own: 0.25 unless it is set. With 0, less,
    /// or no finite number changes take effect at once.
    static double animationDuration();
    static void setAnimationDuration(double seconds);
    /// The pace of animations that have none of their own; the default curve unless it is set.
    static CAMediaTimingFunction animationTimingFunction();
    static void setAnimationTimingFunction(const CAMediaTimingFunction& function);
    /// Whether changes run no actions.
    static bool disableActions();
    static void setDisableActions(bool disable);
    /// Called once, from the run loop, when the transaction is committed and all animations that
    /// were added in it from here on are over or removed. A block that was set before keeps to the
    /// animations added until now.
    static void setCompletionBlock(std::function<void()> block);

    /// Whether changes take effect at once, without animation, while the desktop asks for reduced
    /// motion. For the process; false unless it is set. Animations that a host adds run regardless.
    static bool honorsReducedMotion();
    static void setHonorsReducedMotion(bool honors);

private:
    friend class CALayer;
    struct Work;

    /// Makes sure that there is a transaction, and that it will be committed.
    static void ensure();
    /// How many were committed so far.
    static std::uint64_t count();
    /// What the innermost transaction's completion waits for.
    static std::shared_ptr<void> completion();
    static bool reducesMotion();
    // A layer is in these lists once, until it takes itself out.
    static void addNeedingLayout(CALayer& layer);
    static void removeNeedingLayout(CALayer& layer);
    static void addAnimated(CALayer& layer);
    static void removeAnimated(CALayer& layer);
};

} // namespace kw
