// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/ui/CALayerProperty.h>
#include <KWToolkit/platform/ui/CAMediaTimingFunction.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kw {

class CALayer;

/// What an action is told besides its key.
struct CAActionArguments {
    /// What was on the screen before the change; empty for a key that is no property's.
    CAValue formerValue;
};

/// Something that happens when a property of a layer has changed, or when a layer comes or goes.
class KW_EXPORT CAAction : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The null object: in a layer's table of actions it stands for no action.
    static const std::shared_ptr<CAAction>& null();

    virtual void runActionForKey(
        const std::string& key, CALayer& layer, const CAActionArguments& arguments) = 0;
};

/// What changes the picture of a layer over time and leaves its values alone. As an action it adds
/// a copy of itself to the layer.
class KW_EXPORT CAAnimation : public CAAction {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// In seconds. 0 stands for the transaction's; with less, or no finite number, the animation
    /// is over at once.
    double duration() const { return m_duration; }
    void setDuration(double seconds) { m_duration = seconds; }
    /// Empty stands for the transaction's.
    const std::optional<CAMediaTimingFunction>& timingFunction() const { return m_timingFunction; }
    void setTimingFunction(const std::optional<CAMediaTimingFunction>& function) {
        m_timingFunction = function;
    }

    virtual std::shared_ptr<CAAnimation> copy() const = 0;
    /// Changes what is shown of a layer that has the values of `model`. The progress is that of the
    /// timing function.
    virtual void apply(const CALayerValues& model, CALayerValues& shown, double progress) const = 0;

    void runActionForKey(
        const std::string& key, CALayer& layer, const CAActionArguments& arguments) override;

protected:
    void copySettings(const CAAnimation& animation) {
        m_duration = animation.m_duration;
        m_timingFunction = animation.m_timingFunction;
    }

private:
    double m_duration = 0;
    std::optional<CAMediaTimingFunction> m_timingFunction;
};

/// Leads one property from a value to another. Where the first is empty that is the one the layer
/// has, or had on the screen if the animation is an action; where the second is empty, the one
/// that the layer has meanwhile.
class KW_EXPORT CABasicAnimation : public CAAnimation {
public:
    /// With a key of `CALayerProperty`; of the layer's change where it is empty. With any other, or
    /// values of another type or not finite, nothing is seen.
    explicit CABasicAnimation(std::string keyPath = {})
        : m_keyPath(std::move(keyPath)) { }

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    const std::string& keyPath() const { return m_keyPath; }
    const CAValue& fromValue() const { return m_fromValue; }
    void setFromValue(CAValue value) { m_fromValue = std::move(value); }
    const CAValue& toValue() const { return m_toValue; }
    void setToValue(CAValue value) { m_toValue = std::move(value); }

    std::shared_ptr<CAAnimation> copy() const override;
    void apply(const CALayerValues& model, CALayerValues& shown, double progress) const override;
    void runActionForKey(
        const std::string& key, CALayer& layer, const CAActionArguments& arguments) override;

private:
    std::shared_ptr<CABasicAnimation> copyForKeyPath(const std::string& keyPath) const;

    std::string m_keyPath;
    CAValue m_fromValue;
    CAValue m_toValue;
};

} // namespace kw
