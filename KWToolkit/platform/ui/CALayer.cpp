// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CALayer.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/platform/ui/CAConstraintLayoutManager.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kw {

namespace {

SEL frameKey() {
    static const SEL key("frame");
    return key;
}

} // namespace

CALayer::CALayer()
    : m_madeBeforeCommit(CATransaction::count()) { }

CALayer::~CALayer() {
    if (m_layoutTicket)
        CATransaction::removeNeedingLayout(*this);
    removeAllAnimations();
    for (const auto& layer : m_sublayers)
        layer->m_superlayer = nullptr;
}

Class& CALayer::classObject() {
    static auto& object = *new Class("CALayer", NSObject::classObject(), {},
        {
            property("name", &CALayer::name, &CALayer::setName),
            property("frame", &CALayer::frame, &CALayer::setFrame),
            property("bounds", &CALayer::bounds, &CALayer::setBounds),
            property("position", &CALayer::position, &CALayer::setPosition),
            property("anchorPoint", &CALayer::anchorPoint, &CALayer::setAnchorPoint),
            property("transform", &CALayer::affineTransform, &CALayer::setAffineTransform),
            property("opacity", &CALayer::opacity, &CALayer::setOpacity),
            property("hidden", &CALayer::isHidden, &CALayer::setHidden),
            property("backgroundColor", &CALayer::backgroundColor, &CALayer::setBackgroundColor),
            property("borderColor", &CALayer::borderColor, &CALayer::setBorderColor),
            property("borderWidth", &CALayer::borderWidth, &CALayer::setBorderWidth),
            property("cornerRadius", &CALayer::cornerRadius, &CALayer::setCornerRadius),
            property("contents", &CALayer::contents, &CALayer::setContents),
            property("contentsScale", &CALayer::contentsScale, &CALayer::setContentsScale),
        });
    return object;
}

void CALayer::setName(std::string name) {
    if (name == m_name)
        return;
    changeValueForKey(*this, SEL("name"), [&] {
        m_name = std::move(name);
        superlayerNeedsLayout();
    });
}

bool CALayer::isWithin(const CALayer& tree) const {
    const CALayer* layer = this;
    while (layer && layer != &tree)
        layer = layer->m_superlayer;
    return layer != nullptr;
}

void CALayer::insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index) {
    if (!layer || isWithin(*layer))
        return;
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    if (layer->m_hostView)
        layer->m_hostView->setLayer(nullptr);
    layer->removeFromSuperlayer();
    // An action may have put it elsewhere, or this into it.
    if (layer->m_superlayer || layer->m_hostView || isWithin(*layer))
        return;
    layer->m_superlayer = this;
    const auto place = std::min(index, m_sublayers.size());
    m_sublayers.insert(m_sublayers.begin() + static_cast<std::ptrdiff_t>(place), layer);
    setNeedsLayout();
    setNeedsDisplay();
    layer->runAction("onOrderIn");
    runAction("sublayers");
}

void CALayer::removeFromSuperlayer() {
    if (!m_superlayer)
        return;
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    runAction("onOrderOut");
    CALayer* const superlayer = std::exchange(m_superlayer, nullptr);
    if (!superlayer) // the action has done it
        return;
    auto& siblings = superlayer->m_sublayers;
    siblings.erase(std::ranges::find(siblings, this, &std::shared_ptr<CALayer>::get));
    const std::shared_ptr<NSObject> superlayerAlive = superlayer->weak_from_this().lock();
    superlayer->setNeedsLayout();
    superlayer->setNeedsDisplay();
    superlayer->runAction("sublayers");
}

void CALayer::setBounds(const NSRect& bounds) { change("bounds", bounds); }
void CALayer::setPosition(const NSPoint& position) { change("position", position); }
void CALayer::setAnchorPoint(const NSPoint& point) { change("anchorPoint", point); }
void CALayer::setAffineTransform(const CGAffineTransform& transform) {
    change("transform", transform);
}
void CALayer::setOpacity(float opacity) { change("opacity", static_cast<double>(opacity)); }

void CALayer::setHidden(bool hidden) {
    if (hidden == isHidden())
        return;
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    change("hidden", hidden ? 1.0 : 0.0);
    runAction(hidden ? "onOrderOut" : "onOrderIn");
}

void CALayer::setBackgroundColor(const std::optional<CGColor>& color) {
    change("backgroundColor", color);
}
void CALayer::setBorderColor(const std::optional<CGColor>& color) { change("borderColor", color); }
void CALayer::setBorderWidth(double width) { change("borderWidth", width); }
void CALayer::setCornerRadius(double radius) { change("cornerRadius", radius); }
void CALayer::setContents(const CGImageRef& contents) {
    change("contents", CAContents {contents, nullptr, 1});
}
void CALayer::setContentsScale(double scale) { change("contentsScale", scale); }

void CALayer::setFrame(const NSRect& frame) {
    const NSRect former = this->frame();
    if (!isFinite(frame) || frame == former)
        return;
    CALayerValues there = m_values;
    there.position = {};
    if (frame.size != former.size) {
        // Turned back, that is the size asked for, or a larger one where the transform turns.
        const CGAffineTransform& matrix = m_values.transform;
        const double determinant = matrix.a * matrix.d - matrix.b * matrix.c;
        const auto part = [determinant](double factor) { return std::abs(factor / determinant); };
        there.bounds.size = {
            part(matrix.d) * frame.size.width + part(matrix.c) * frame.size.height,
            part(matrix.b) * frame.size.width + part(matrix.a) * frame.size.height,
        };
        if (!isFinite(there.bounds)) // no way back
            there.bounds.size = frame.size;
    }
    const NSRect around = there.frame();
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    detail::changeAnnounced(*this, frameKey(), [&] {
        setBounds(there.bounds);
        setPosition({frame.origin.x + (frame.size.width - around.size.width) / 2 - around.origin.x,
            frame.origin.y + (frame.size.height - around.size.height) / 2 - around.origin.y});
    });
}

void CALayer::setMasksToBounds(bool masks) {
    if (std::exchange(m_masksToBounds, masks) != masks)
        setNeedsDisplay();
}

void CALayer::change(std::string_view key, const CAValue& value) {
    const CALayerProperty& property = *CALayerProperty::find(key);
    if (!isFinite(value) || property.get(m_values) == value)
        return;
    // An action or an observer may let go of the layer.
    const std::shared_ptr<NSObject> alive = weak_from_this().lock();
    std::shared_ptr<CAAction> action;
    if (m_madeBeforeCommit < CATransaction::count())
        action = actionToRun(key);
    else
        CATransaction::ensure(); // so that the next change finds something on the screen
    const CAActionArguments arguments {action ? property.get(presentationValues()) : CAValue()};
    const auto apply = [&] {
        changeValueForKey(*this, SEL(key), [&] {
            const NSSize formerSize = m_values.bounds.size;
            property.set(m_values, value);
            setNeedsDisplay();
            if (m_values.bounds.size == formerSize)
                return;
            setNeedsLayout();
            superlayerNeedsLayout();
        });
    };
    if (property.traits.movesFrame && isObserved(frameKey()))
        detail::changeAnnounced(*this, frameKey(), apply);
    else
        apply();
    if (action)
        action->runActionForKey(std::string(key), *this, arguments);
}

std::shared_ptr<CAAction> CALayer::actionToRun(std::string_view key) const {
    auto action = CATransaction::disableActions() ? nullptr : actionForKey(key);
    if (dynamic_cast<const CAAnimation*>(action.get()) && CATransaction::reducesMotion())
        return nullptr;
    return action;
}

void CALayer::runAction(std::string_view key) {
    if (const auto action = actionToRun(key))
        action->runActionForKey(std::string(key), *this, {});
}

std::shared_ptr<CAAction> CALayer::actionForKey(std::string_view key) const {
    const auto own = m_actions.find(key);
    if (own == m_actions.end() || !own->second)
        return defaultActionForKey(key);
    return own->second == CAAction::null() ? nullptr : own->second;
}

std::shared_ptr<CAAction> CALayer::defaultActionForKey(std::string_view key) {
    const CALayerProperty* const property = CALayerProperty::find(key);
    if (!property || !property->traits.isAnimatedByDefault)
        return nullptr;
    return std::make_shared<CABasicAnimation>(std::string(key));
}

void CALayer::addAnimation(const CAAnimation& animation, const std::string& key) {
    const auto added = animation.copy();
    if (added->duration() == 0)
        added->setDuration(CATransaction::animationDuration());
    if (!added->timingFunction())
        added->setTimingFunction(CATransaction::animationTimingFunction());
    removeAnimationForKey(key);
    if (!(added->duration() > 0 && std::isfinite(added->duration())))
        return;
    m_animations.push_back({key, added, std::nullopt, CATransaction::completion()});
    CATransaction::addAnimated(*this);
    setNeedsDisplay();
}

void CALayer::removeAnimationForKey(std::string_view key) {
    const auto removed = std::erase_if(
        m_animations, [key](const Running& running) { return !key.empty() && running.key == key; });
    if (removed == 0)
        return;
    setNeedsDisplay();
    if (m_animations.empty())
        CATransaction::removeAnimated(*this);
}

void CALayer::removeAllAnimations() {
    if (m_animations.empty())
        return;
    m_animations.clear();
    setNeedsDisplay();
    CATransaction::removeAnimated(*this);
}

void CALayer::beginAnimations(double time) {
    for (Running& running : m_animations) {
        if (!running.beginTime)
            running.beginTime = time;
    }
}

void CALayer::endAnimations(double time) {
    std::erase_if(m_animations, [time](const Running& running) { return running.isOver(time); });
    if (m_animations.empty())
        CATransaction::removeAnimated(*this);
}

std::vector<std::string> CALayer::animationKeys() const {
    std::vector<std::string> keys;
    for (const Running& running : m_animations) {
        if (!running.key.empty())
            keys.push_back(running.key);
    }
    return keys;
}

std::shared_ptr<const CAAnimation> CALayer::animationForKey(std::string_view key) const {
    const auto found = std::ranges::find(m_animations, key, &Running::key);
    return key.empty() || found == m_animations.end() ? nullptr : found->animation;
}

CALayerValues CALayer::presentationValues() const {
    CALayerValues shown = m_values;
    if (m_animations.empty())
        return shown;
    const double time = Platform::clock().now();
    for (const auto& [key, animation, beginTime, completion] : m_animations) {
        const double part = beginTime ? (time - *beginTime) / animation->duration() : 0;
        const auto& pace = animation->timingFunction();
        if (part < 1)
            animation->apply(m_values, shown, pace ? pace->progressAt(part) : part);
    }
    return shown;
}

std::shared_ptr<CALayer> CALayer::presentationLayer() const {
    auto copy = std::make_shared<CALayer>();
    copy->m_name = m_name;
    copy->m_values = presentationValues();
    copy->m_masksToBounds = m_masksToBounds;
    copy->m_madeBeforeCommit = std::numeric_limits<std::uint64_t>::max();
    return copy;
}

void CALayer::setNeedsDisplay() {
    const CALayer* root = this;
    while (root->m_superlayer)
        root = root->m_superlayer;
    if (root->m_hostView)
        root->m_hostView->setNeedsDisplay();
}

void CALayer::superlayerNeedsLayout() {
    // While it lays out itself, it knows.
    if (m_superlayer && !m_superlayer->m_isLayingOut)
        m_superlayer->setNeedsLayout();
}

void CALayer::setNeedsLayout() { CATransaction::addNeedingLayout(*this); }

void CALayer::layoutIfNeeded() {
    CALayer* top = this;
    while (top->m_superlayer && top->m_superlayer->m_layoutTicket)
        top = top->m_superlayer;
    // Kept for the calls, in which the tree may change.
    const std::shared_ptr<NSObject> alive = top->weak_from_this().lock();
    const auto layout = [](CALayer& layer) {
        if (!layer.m_layoutTicket || layer.m_isLayingOut)
            return;
        CATransaction::removeNeedingLayout(layer);
        struct Scope {
            bool& flag;
            ~Scope() { flag = false; }
        };
        layer.m_isLayingOut = true;
        const Scope scope {layer.m_isLayingOut};
        layer.layoutSublayers();
    };
    layout(*top);
    auto rest = top->m_sublayers;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const auto layer = rest[i];
        layout(*layer);
        rest.insert(rest.end(), layer->m_sublayers.begin(), layer->m_sublayers.end());
    }
}

void CALayer::layoutSublayers() {
    if (const auto manager = m_layoutManager) // a copy: it may be replaced meanwhile
        manager->layoutSublayersOfLayer(*this);
}

void CALayer::setLayoutManager(std::shared_ptr<CALayoutManager> manager) {
    m_layoutManager = std::move(manager);
    setNeedsLayout();
}

void CALayer::setConstraints(std::vector<CAConstraint> constraints) {
    m_constraints = std::move(constraints);
    superlayerNeedsLayout();
}

void CALayer::addConstraint(CAConstraint constraint) {
    m_constraints.push_back(std::move(constraint));
    superlayerNeedsLayout();
}

void CALayer::fillHostView() {
    // Layout that follows is not without animation, so it belongs to the enclosing transaction.
    CATransaction::ensure();
    CATransaction::begin();
    CATransaction::setDisableActions(true);
    try {
        setFrame(m_hostView->bounds());
    } catch (...) {
        CATransaction::commit();
        throw;
    }
    CATransaction::commit();
}

} // namespace kw
