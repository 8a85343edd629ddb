// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CAAnimation.h>

#include <KWToolkit/platform/ui/CALayer.h>

namespace kw {

namespace {

struct NoAction final : CAAction {
    void runActionForKey(const std::string&, CALayer&, const CAActionArguments&) override { }
};

} // namespace

Class& CAAction::classObject() {
    static auto& object = *new Class("CAAction", NSObject::classObject());
    return object;
}

const std::shared_ptr<CAAction>& CAAction::null() {
    static const auto& object = *new std::shared_ptr<CAAction>(std::make_shared<NoAction>());
    return object;
}

Class& CAAnimation::classObject() {
    static auto& object = *new Class("CAAnimation", CAAction::classObject());
    return object;
}

void CAAnimation::runActionForKey(
    const std::string& key, CALayer& layer, const CAActionArguments&) {
    layer.addAnimation(*this, key);
}

Class& CABasicAnimation::classObject() {
    static auto& object = *new Class("CABasicAnimation", CAAnimation::classObject());
    return object;
}

std::shared_ptr<CABasicAnimation> CABasicAnimation::copyForKeyPath(
    const std::string& keyPath) const {
    auto result = std::make_shared<CABasicAnimation>(keyPath);
    result->copySettings(*this);
    result->m_fromValue = m_fromValue;
    result->m_toValue = m_toValue;
    return result;
}

std::shared_ptr<CAAnimation> CABasicAnimation::copy() const { return copyForKeyPath(m_keyPath); }

void CABasicAnimation::apply(
    const CALayerValues& model, CALayerValues& shown, double progress) const {
    const CALayerProperty* const property = CALayerProperty::find(m_keyPath);
    if (!property)
        return;
    const CAValue own = property->get(model);
    const auto valueOr = [&own](const CAValue& value) {
        return std::holds_alternative<std::monostate>(value) ? own : value;
    };
    const CAValue from = valueOr(m_fromValue);
    const CAValue to = valueOr(m_toValue);
    if (from.index() != own.index() || to.index() != own.index())
        return;
    if (const CAValue value = property->interpolate(from, to, progress); isFinite(value))
        property->set(shown, value);
}

void CABasicAnimation::runActionForKey(
    const std::string& key, CALayer& layer, const CAActionArguments& arguments) {
    const auto animation = copyForKeyPath(m_keyPath.empty() ? key : m_keyPath);
    const bool isOfChange = animation->m_keyPath == key;
    if (isOfChange && std::holds_alternative<std::monostate>(m_fromValue))
        animation->m_fromValue = arguments.formerValue;
    layer.addAnimation(*animation, key);
}

} // namespace kw
