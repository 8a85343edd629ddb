// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/headless/HeadlessRunLoop.h>
#include <KWToolkit/platform/headless/HeadlessViewHost.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <KWToolkit/platform/headless/RecordingGraphicsContext.h>
#include <KWToolkit/platform/ui/CAConstraintLayoutManager.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>
#include <KWToolkit/windows/layers/CALayer+Animations.h>
#include <KWToolkit/windows/layers/CALayer+Layout.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <stdexcept>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::IsEmpty;
using enum CAConstraintAttribute;
using Recording = RecordingGraphicsContext;
using Layer = std::shared_ptr<CALayer>;

constexpr double infinite = std::numeric_limits<double>::infinity();

CGColor gray(double white) { return {CGColorSpace::deviceGray, {white, 1}}; }

/// Writes down what it is run for.
struct Note : CAAction {
    void runActionForKey(
        const std::string& key, CALayer&, const CAActionArguments& arguments) override {
        log.push_back(key);
        former = arguments.formerValue;
    }
    std::vector<std::string> log;
    CAValue former;
};

struct Layers : testing::Test {
    ~Layers() override { CATransaction::flush(); }

    /// A layer that has been on the screen.
    static Layer shown(const NSRect& frame, const Layer& superlayer = nullptr) {
        auto layer = std::make_shared<CALayer>();
        layer->setFrame(frame);
        if (superlayer)
            superlayer->addSublayer(layer);
        layer->setNeedsLayout();
        CATransaction::flush();
        return layer;
    }
    static double shownX(const Layer& layer) { return layer->presentationLayer()->position().x; }
    static double shownOpacity(const Layer& layer) { return layer->presentationLayer()->opacity(); }

    HeadlessClock clock;
    HeadlessRunLoop loop {clock};
    HeadlessWorkspace workspace;
    const ServiceScope<HeadlessClock> clockScope {clock};
    const ServiceScope<HeadlessRunLoop> loopScope {loop};
    const ServiceScope<HeadlessWorkspace> workspaceScope {workspace};
};

TEST_F(Layers, EachLayoutCallAddsItsConstraints) {
    struct Row {
        std::function<void(CALayer&)> call;
        std::vector<CAConstraint> added;
    };
    const Row rows[] = {
        {[](auto& l) { centerHorizontallyRelativeTo(l, "s", 2); }, {{midX, "s", midX, 1, 2}}},
        {[](auto& l) { centerVerticallyRelativeTo(l, "s", 2); }, {{midY, "s", midY, 1, 2}}},
        {[](auto& l) { centerVerticallyAndHorizontallyRelativeTo(l, "s", 2, 3); },
            {{midX, "s", midX, 1, 2}, {midY, "s", midY, 1, 3}}},
        {[](auto& l) { centerVerticallyAndHorizontallyRelativeTo(l, "s"); },
            {{midX, "s", midX, 1, 0}, {midY, "s", midY, 1, 0}}},
        {[](auto& l) { anchorTopRelativeTo(l, "s", 2); }, {{maxY, "s", maxY, 1, 2}}},
        {[](auto& l) { anchorBottomRelativeTo(l, "s", 2); }, {{minY, "s", minY, 1, 2}}},
        {[](auto& l) { anchorRightRelativeTo(l, "s", 2); }, {{maxX, "s", maxX, 1, 2}}},
        {[](auto& l) { anchorLeftRelativeTo(l, "s", 2); }, {{minX, "s", minX, 1, 2}}},
        {[](auto& l) { stayOnLeftRelativeTo(l, "s", 2); }, {{maxX, "s", minX, 1, 2}}},
        {[](auto& l) { stayOnRightRelativeTo(l, "s", 2); }, {{minX, "s", maxX, 1, 2}}},
        {[](auto& l) { centerHorizontallyRelativeTo(l, "s", 10, -10); },
            {{minX, "superlayer", minX, 1, 10}, {maxX, "superlayer", maxX, 1, -10}}},
    };
    CALayer layer;
    std::vector<CAConstraint> all;
    for (const auto& [call, added] : rows) {
        call(layer);
        all.insert(all.end(), added.begin(), added.end());
        EXPECT_EQ(layer.constraints(), all) << &call - &rows[0].call;
    }
}

TEST_F(Layers, ConstraintsDecideWhereLayersAre) {
    struct Row {
        const char* name;
        // For a, b and c, which lie at (0, 0), (100, 100) and (200, 200) and are 20 by 10.
        std::vector<CAConstraint> constraints[3];
        NSRect frames[3];
    };
    const NSRect a = NSMakeRect(0, 0, 20, 10), b = NSMakeRect(100, 100, 20, 10),
                 c = NSMakeRect(200, 200, 20, 10);
    const CAConstraint left {minX, "superlayer", minX, 1, 10};
    const Row rows[] = {
        {"one moves", {{{maxX, "b", midX, 1, 5}, {midY, "b", maxY, 2, 0}}, {}, {}},
            {NSMakeRect(95, 215, 20, 10), b, c}},
        {"two size", {{{minX, "b", maxX}, {midX, "c", minX}, {height, "b", width}}, {}, {}},
            {NSMakeRect(120, 0, 160, 20), b, c}},
        {"the superlayer's bounds", {{left, {maxX, "superlayer", maxX, 1, -10}}, {}, {}},
            {NSMakeRect(60, 0, 480, 10), b, c}},
        {"backward chain", {{{minX, "b", maxX}}, {{minX, "c", maxX}}, {left}},
            {NSMakeRect(100, 0, 20, 10), NSMakeRect(80, 100, 20, 10), NSMakeRect(60, 200, 20, 10)}},
        {"itself", {{{width, "a", height, 3}, {minY, "a", maxY}}, {}, {}},
            {NSMakeRect(0, 10, 30, 10), b, c}},
        {"unknown and not finite",
            {{left, {minX, "d", minX}, {minX, "", minX}, {minX, "b", minX, infinite},
                 {minX, "b", minX, 1, std::nan("")}},
                {}, {}},
            {NSMakeRect(60, 0, 20, 10), b, c}},
        {"the newest of an attribute", {{left, {minX, "b", minX}}, {}, {}},
            {NSMakeRect(100, 0, 20, 10), b, c}},
        {"the newest two of three", {{left, {width, "c", width, 2}, {maxX, "b", minX}}, {}, {}},
            {NSMakeRect(60, 0, 40, 10), b, c}},
        {"never below 0", {{{minX, "c", minX}, {maxX, "b", minX}}, {}, {}},
            {NSMakeRect(100, 0, 0, 10), b, c}},
        {"a circle", {{{minX, "b", maxX}}, {{minX, "a", maxX}}, {{minX, "a", minX}}},
            {NSMakeRect(40, 0, 20, 10), NSMakeRect(20, 100, 20, 10), NSMakeRect(40, 200, 20, 10)}},
    };
    for (const auto& [name, constraints, frames] : rows) {
        const auto root = std::make_shared<CALayer>();
        root->setBounds(NSMakeRect(50, 0, 500, 300));
        root->setLayoutManager(std::make_shared<CAConstraintLayoutManager>());
        const char* const names[] = {"a", "b", "c", "b", "superlayer"}; // the first counts
        for (std::size_t i = 0; i < std::size(names); ++i) {
            const auto layer = std::make_shared<CALayer>();
            layer->setName(names[i]);
            root->addSublayer(layer);
            if (i < std::size(frames)) {
                layer->setFrame(std::array {a, b, c}[i]);
                layer->setConstraints(constraints[i]);
            }
        }
        root->layoutIfNeeded();
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_EQ(root->sublayers()[i]->frame(), frames[i]) << name << " " << i;
    }
}

TEST_F(Layers, LongChainsAreLaidOut) {
    const auto root = std::make_shared<CALayer>();
    root->setLayoutManager(std::make_shared<CAConstraintLayoutManager>());
    constexpr int count = 20000;
    for (int i = count; i > 0; --i) {
        const auto layer = std::make_shared<CALayer>();
        layer->setBounds(NSMakeRect(0, 0, 2, 2));
        layer->setName(std::to_string(i));
        stayOnRightRelativeTo(*layer, i == 1 ? "superlayer" : std::to_string(i - 1), 1);
        root->addSublayer(layer);
    }
    CATransaction::flush();
    EXPECT_EQ(root->sublayers().front()->frame().origin.x, 3 * count - 2);
}

TEST_F(Layers, LayoutFollowsWhatItDependsOnAndKeepsTurnedLayersAsTheyAre) {
    const Layer root = shown(NSMakeRect(0, 0, 100, 100));
    const Layer turned = shown(NSMakeRect(0, 0, 20, 10), root);
    turned->setAffineTransform({0.8, 0.6, -0.6, 0.8, 0, 0});
    centerVerticallyAndHorizontallyRelativeTo(*turned, "superlayer");
    root->setLayoutManager(std::make_shared<CAConstraintLayoutManager>());
    for (const double side : {100.0, 200.0}) {
        root->setBounds(NSMakeRect(0, 0, side, side));
        CATransaction::flush();
        EXPECT_DOUBLE_EQ(turned->position().x, side / 2);
        EXPECT_EQ(turned->bounds(), NSMakeRect(0, 0, 20, 10));
    }
}

TEST_F(Layers, LayoutThatNeverRestsOrThrowsHoldsNothingUp) {
    struct Restless : CALayer {
        void layoutSublayers() override {
            setNeedsLayout();
            if (++count % 2 == 0)
                throw std::runtime_error("no layout");
        }
        int count = 0;
    };
    Restless layer;
    layer.setNeedsLayout();
    EXPECT_THROW(loop.runOnce(0), std::runtime_error);
    EXPECT_FALSE(loop.runOnce(0)); // not before the next frame
    EXPECT_EQ(layer.count, 2);
    EXPECT_THROW(loop.advance(0.02), std::runtime_error);
    EXPECT_EQ(layer.count, 4);
}

TEST_F(Layers, WithoutImplicitAnimationsElevenKeysTakeEffectAtOnce) {
    const Layer layer = shown(NSMakeRect(0, 0, 20, 10));
    const Layer sublayer = shown(NSMakeRect(0, 0, 2, 2), layer);
    layer->setActions({{"opacity", CAAction::null()}, {"own", CAAction::null()}});
    removeAllImplicitAnimations(*layer);
    std::vector<std::string> keys;
    for (const auto& [key, action] : layer->actions()) {
        EXPECT_EQ(action, CAAction::null());
        keys.push_back(key);
    }
    EXPECT_THAT(keys,
        testing::UnorderedElementsAre("onOrderIn", "onOrderOut", "sublayers", "contents", "bounds",
            "frame", "origin", "position", "backgroundColor", "borderColor", "contentsScale"));
    layer->setFrame(NSMakeRect(50, 50, 40, 40));
    layer->setBackgroundColor(gray(1));
    EXPECT_EQ(layer->presentationLayer()->frame(), NSMakeRect(50, 50, 40, 40));
    EXPECT_THAT(layer->animationKeys(), IsEmpty());
    layer->setOpacity(0.5);
    EXPECT_EQ(shownOpacity(layer), 1);
    sublayer->setPosition({10, 10});
    EXPECT_THAT(sublayer->animationKeys(), ElementsAre("position"));
}

TEST_F(Layers, ChangesAreAnimatedFromWhatIsOnTheScreen) {
    const auto layer = std::make_shared<CALayer>();
    layer->setPosition({-8, 0}); // nothing is on the screen yet
    EXPECT_EQ(shownX(layer), -8);
    layer->setPosition({0, 0});
    CATransaction::flush();
    layer->setPosition({0, 0});
    EXPECT_THAT(layer->animationKeys(), IsEmpty());

    layer->setPosition({80, 0});
    clock.advance(0.1);
    EXPECT_EQ(shownX(layer), 0); // not committed
    EXPECT_EQ(layer->position().x, 80);
    loop.runOnce(0);
    loop.advance(0.125);
    const double half = shownX(layer);
    EXPECT_NEAR(half, 80 * 0.8024, 0.01);
    layer->setPosition({0, 0});
    EXPECT_EQ(shownX(layer), half);
    loop.runOnce(0);
    loop.advance(0.2);
    EXPECT_LT(shownX(layer), half);
    EXPECT_GT(shownX(layer), 0);
    loop.advance(0.1);
    EXPECT_THAT(layer->animationKeys(), IsEmpty());
    EXPECT_FALSE(loop.runOnce(1));
}

TEST_F(Layers, TransactionsSettleHow) {
    const Layer layer = shown({});
    std::string log;
    const auto note = [&log](const char* what) { return [&log, what] { log += what; }; };
    CATransaction::begin();
    CATransaction::setAnimationDuration(1);
    CATransaction::setAnimationTimingFunction(
        CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear));
    CATransaction::setCompletionBlock(note("outer "));
    layer->setPosition({100, 0});
    CATransaction::begin();
    EXPECT_EQ(CATransaction::animationDuration(), 1);
    CATransaction::setAnimationDuration(2);
    CATransaction::setCompletionBlock(note("inner "));
    layer->setOpacity(0);
    CATransaction::setCompletionBlock(note("none "));
    CATransaction::begin();
    CATransaction::setDisableActions(true);
    layer->setCornerRadius(5);
    CATransaction::commit();
    CATransaction::commit();
    EXPECT_EQ(CATransaction::animationDuration(), 1);
    CATransaction::commit();
    CATransaction::commit(); // one too many
    EXPECT_EQ(CATransaction::animationDuration(), 0.25);
    EXPECT_EQ(layer->presentationLayer()->cornerRadius(), 5);
    loop.advance(0.5);
    EXPECT_EQ(log, "none ");
    EXPECT_EQ(shownX(layer), 50);
    EXPECT_EQ(shownOpacity(layer), 0.75);
    loop.advance(1.1);
    EXPECT_EQ(log, "none "); // the inner one's animation is the outer one's, too
    layer->removeAllAnimations();
    loop.advance(0.1);
    EXPECT_EQ(log, "none inner outer ");

    for (const double seconds : {0.0, -1.0, infinite}) {
        CATransaction::setAnimationDuration(seconds);
        layer->setPosition({seconds == 0 ? 1.0 : 2.0, seconds});
        EXPECT_THAT(layer->animationKeys(), IsEmpty()) << seconds;
    }
}

TEST_F(Layers, FlushWaitsForTransactionsWithin) {
    const Layer layer = shown({});
    layer->setOpacity(0); // begins the implicit one
    CATransaction::begin();
    layer->setPosition({4, 0});
    CATransaction::flush();
    loop.runOnce(0);
    clock.advance(1);
    EXPECT_EQ(shownOpacity(layer), 1);
    CATransaction::commit();
    clock.advance(1);
    EXPECT_EQ(shownOpacity(layer), 0);
}

TEST_F(Layers, EveryPropertyIsInterpolated) {
    const auto picture = [] {
        return CGImage::create(CGImageLayout::premultipliedRGBA(1, 1),
            std::shared_ptr<const std::uint8_t[]>(new std::uint8_t[4] {}));
    };
    const CGImageRef one = picture(), other = picture();
    const std::optional<CGColor> white = gray(1), none;
    const CGColor cmyk(CGColorSpace::deviceCMYK, {0, 1, 1, 0, 0.5});
    const auto rgba = [](double r, double g, double b, double a) -> std::optional<CGColor> {
        return CGColor(CGColorSpace::deviceRGB, {r, g, b, a});
    };
    struct Row {
        const char* key;
        CAValue from, to, middle;
    };
    const Row rows[] = {
        {"bounds", NSMakeRect(0, 0, 2, 4), NSMakeRect(2, 0, 4, 0), NSMakeRect(1, 0, 3, 2)},
        {"position", NSPoint {1e308, 2}, NSPoint {-1e308, 4}, NSPoint {0, 3}},
        {"anchorPoint", NSPoint {0, 0}, NSPoint {1, 0}, NSPoint {0.5, 0}},
        {"transform", CGAffineTransform {}, CGAffineTransform {-1, 2, 4, -1, 6, 8},
            CGAffineTransform {0, 1, 2, 0, 3, 4}},
        {"opacity", 1.0, 0.0, 0.5},
        {"hidden", 0.0, 1.0, 0.5},
        {"backgroundColor", none, white, rgba(1, 1, 1, 0.5)},
        {"borderColor", white, std::optional(cmyk), rgba(1, 0.5, 0.5, 0.75)},
        {"borderWidth", 0.0, 3.0, 1.5},
        {"cornerRadius", 4.0, 0.0, 2.0},
        {"contents", CAContents {one}, CAContents {other}, CAContents {other, one, 0.5}},
        {"contentsScale", 1.0, 2.0, 1.5},
        {"position", NSPoint {0, 0}, 4.0, NSPoint {7, 7}}, // of another type
        {"position", NSPoint {0, 0}, NSPoint {infinite, 0}, NSPoint {7, 7}},
    };
    for (const auto& [key, from, to, middle] : rows) {
        CABasicAnimation animation(key);
        animation.setFromValue(from);
        animation.setToValue(to);
        const CALayerValues model;
        CALayerValues shown;
        shown.position = {7, 7};
        animation.apply(model, shown, 0.5);
        EXPECT_EQ(CALayerProperty::find(key)->get(shown), middle) << key;
        const bool animates = CALayer::defaultActionForKey(key) != nullptr;
        EXPECT_EQ(animates, std::string(key) != "contentsScale");
    }
    EXPECT_EQ(CALayer::defaultActionForKey("onOrderIn"), nullptr);
    EXPECT_EQ(CALayer::defaultActionForKey("sublayers"), nullptr);
}

TEST_F(Layers, CurvesAreThoseOfTheirControlPoints) {
    struct Row {
        CAMediaTimingFunction curve;
        double time, progress;
    };
    const auto named = &CAMediaTimingFunction::functionWithName;
    const Row rows[] = {
        {named("linear"), 0.3, 0.3}, {named("default"), 0.5, 0.802403},
        {named("easeIn"), 0.5, 0.315357}, {named("easeOut"), 0.5, 0.684643},
        {named("easeInEaseOut"), 0.25, 0.129162}, {named("default"), -1, 0},
        {named("default"), 2, 1}, {named("default"), std::nan(""), 0},
        {{1, 0, 0, 1}, 0.5, 0.5}, // upright in the middle
        {{1, 0, 0, 1}, 0.51, 0.698581}, {{7, 2, -5, infinite}, 0, 0},
        {{0.3, -1, 0.7, 2}, 0.1, -0.193840}, // beyond both ends
    };
    for (const auto& [curve, time, progress] : rows)
        EXPECT_NEAR(curve.progressAt(time), progress, 1e-3) << time;
    EXPECT_THROW(named("slow"), NSException);
}

TEST_F(Layers, ActionsOfALayersOwnTakeTheDefaultsPlaces) {
    const Layer layer = shown(NSMakeRect(0, 0, 2, 2));
    const auto note = std::make_shared<Note>();
    CALayer::Actions actions;
    for (const char* const key : {"position", "bounds", "frame", "contentsScale", "sublayers",
             "onOrderIn", "onOrderOut", "hidden"})
        actions.emplace(key, note);
    layer->setActions(actions);
    const auto takeLog = [&] { return std::exchange(note->log, {}); };
    layer->setFrame(NSMakeRect(2, 0, 4, 4));
    EXPECT_THAT(takeLog(), ElementsAre("bounds", "position"));
    EXPECT_EQ(note->former, CAValue(NSPoint {1, 1}));
    layer->setContentsScale(2);
    layer->setHidden(true);
    EXPECT_THAT(takeLog(), ElementsAre("contentsScale", "hidden", "onOrderOut"));
    layer->addSublayer(std::make_shared<CALayer>());
    layer->sublayers()[0]->removeFromSuperlayer();
    EXPECT_THAT(takeLog(), ElementsAre("sublayers", "sublayers"));
    shown({})->addSublayer(layer);
    EXPECT_THAT(takeLog(), ElementsAre("onOrderIn")); // the superlayer is gone already
    EXPECT_EQ(layer->superlayer(), nullptr);

    const auto slow = std::make_shared<CABasicAnimation>();
    slow->setDuration(10);
    layer->setActions({{"opacity", slow}, {"position", CAAction::null()}, {"bounds", nullptr}});
    layer->setOpacity(0);
    EXPECT_EQ(shownOpacity(layer), 1);
    EXPECT_EQ(layer->animationForKey("opacity")->duration(), 10);
    EXPECT_EQ(layer->actionForKey("position"), nullptr);
    EXPECT_NE(layer->actionForKey("bounds"), nullptr); // no action is no answer
}

TEST_F(Layers, TreesHaveNoCirclesAndNumbersAreFinite) {
    const Layer root = shown(NSMakeRect(1, 2, 3, 4));
    const Layer leaf = shown({}, root);
    const Layer between = std::make_shared<CALayer>();
    root->insertSublayer(between, 0);
    leaf->addSublayer(root);
    root->addSublayer(root);
    root->addSublayer(nullptr);
    EXPECT_THAT(root->sublayers(), ElementsAre(between, leaf));
    root->insertSublayer(root->sublayers()[0], 9);
    EXPECT_THAT(root->sublayers(), ElementsAre(leaf, between));

    root->setFrame(NSMakeRect(0, 0, std::nan(""), 1));
    root->setPosition({infinite, 0});
    root->setOpacity(static_cast<float>(infinite));
    EXPECT_EQ(root->frame(), NSMakeRect(1, 2, 3, 4));
    EXPECT_EQ(root->opacity(), 1);
}

TEST_F(Layers, DrawsBackToFrontWithTheBorderOnTop) {
    NSView view(NSMakeRect(0, 0, 100, 100));
    const Layer root = std::make_shared<CALayer>();
    view.setLayer(root);
    root->setBackgroundColor(gray(1));
    root->setBorderWidth(2);
    root->setBorderColor(gray(0));
    root->setMasksToBounds(true);
    const Layer sublayer = shown(NSMakeRect(10, 20, 30, 40), root);
    sublayer->setBackgroundColor(gray(0.5));
    sublayer->setOpacity(0.5);
    sublayer->setAffineTransform({2, 0, 0, 2, 0, 0});
    const Layer hidden = shown(NSMakeRect(10, 20, 30, 40), root);
    hidden->setBackgroundColor(gray(0.25));
    hidden->setHidden(true);
    const Layer vast = shown(NSMakeRect(10, 20, 1e300, 40), root);
    vast->setBackgroundColor(gray(0.25));
    for (const Layer& layer : root->sublayers())
        layer->removeAllAnimations();

    const auto calls = [&view] {
        Recording context;
        view.drawLayer(context);
        std::string log;
        for (const auto& call : context.calls()) {
            if (const auto* const color = std::get_if<Recording::SetFillCGColor>(&call))
                log += "color " + std::to_string(color->color.components()[0]).substr(0, 4) + ", ";
            if (const auto* const group = std::get_if<Recording::BeginTransparencyLayer>(&call))
                log += "group " + std::to_string(group->alpha).substr(0, 4) + ", ";
            if (const auto* const matrix = std::get_if<Recording::Concat>(&call))
                log += "to " + std::to_string(static_cast<int>(matrix->transform.tx)) + ", ";
            static constexpr const char* others[] = {
                "save, ", "restore, ", "", "clip, ", "", "end, ", "", "", "", "", "fill, "};
            if (call.index() < std::size(others))
                log += others[call.index()];
        }
        return log;
    };
    EXPECT_EQ(calls(),
        "save, to 0, color 1.00, fill, save, clip, "
        "save, to -5, clip, group 0.50, color 0.50, fill, end, restore, "
        "restore, color 0.00, fill, restore, ");
    hidden->setHidden(false);
    CATransaction::flush();
    loop.advance(0.2);
    EXPECT_THAT(calls(), testing::ContainsRegex("to 10, clip, group 0.9., color 0.25"));
    root->setAffineTransform({0, 0, 0, 0, 0, 0});
    root->removeAllAnimations();
    EXPECT_EQ(calls(), "");
}

TEST_F(Layers, AViewFollowsItsLayersWhileTheyChange) {
    HeadlessViewHost host;
    auto view = std::make_shared<NSView>(NSMakeRect(10, 10, 100, 50));
    view->setHost(&host);
    const Layer root = shown(NSMakeRect(3, 3, 3, 3));
    const Layer leaf = shown({}, root);
    view->setLayer(root);
    view->setFrame(NSMakeRect(0, 0, 200, 100));
    EXPECT_EQ(root->frame(), NSMakeRect(0, 0, 200, 100));
    EXPECT_THAT(root->animationKeys(), IsEmpty());
    loop.runOnce(0);

    host.dirty.clear();
    leaf->setMasksToBounds(true);
    EXPECT_EQ(host.dirty.size(), 1);
    leaf->setPosition({5, 5});
    loop.runOnce(0);
    host.dirty.clear();
    loop.advance(2);
    EXPECT_THAT(host.dirty.size(), testing::AllOf(testing::Ge(15), testing::Le(17)));
    EXPECT_FALSE(loop.runOnce(1));

    leaf->setPosition({0, 0});
    loop.runOnce(0);
    NSView other;
    other.setLayer(root); // from the first
    EXPECT_EQ(view->layer(), nullptr);
    view->setLayer(leaf); // from its superlayer
    EXPECT_THAT(root->sublayers(), IsEmpty());
    root->addSublayer(leaf); // from its view
    EXPECT_EQ(view->layer(), nullptr);
    view->setLayer(root);
    view.reset();
    loop.advance(0.1);
    leaf->setPosition({1, 1});
}

TEST_F(Layers, NothingIsScheduledForLayersThatAreGone) {
    {
        const Layer layer = shown({});
        layer->setPosition({5, 5});
        loop.runOnce(0);
    }
    EXPECT_FALSE(loop.runOnce(1));
    {
        CALayer needy;
        needy.setNeedsLayout();
    }
    CATransaction::flush();
}

TEST_F(Layers, ReducedMotionIsHonoredWhereTheHostWantsIt) {
    const Layer layer = shown({});
    workspace.reducesMotion = true;
    layer->setPosition({5, 5});
    EXPECT_EQ(shownX(layer), 0);
    CATransaction::setHonorsReducedMotion(true);
    layer->setOpacity(0);
    EXPECT_EQ(shownOpacity(layer), 0);
    workspace.reducesMotion = false;
    layer->setOpacity(1);
    EXPECT_EQ(shownOpacity(layer), 0);
    CATransaction::setHonorsReducedMotion(false);
}

/// An action made of a function.
struct Act : CAAction {
    explicit Act(std::function<void()> function)
        : call(std::move(function)) { }
    void runActionForKey(const std::string&, CALayer&, const CAActionArguments&) override {
        call();
    }
    std::function<void()> call;
};
CALayer::Actions action(const char* key, std::function<void()> call) {
    return {{key, std::make_shared<Act>(std::move(call))}};
}

TEST_F(Layers, ActionsMayTurnTheTreeUpsideDown) {
    Layer root = shown({}), layer = shown({});
    layer->setActions(action("onOrderIn", [&] { root.reset(); }));
    root->addSublayer(layer);
    EXPECT_EQ(layer->superlayer(), nullptr);

    const Layer outer = shown({}), inner = shown({}), former = shown({}), third = shown({});
    former->addSublayer(inner);
    former->setActions(action("sublayers", [&] { inner->addSublayer(outer); }));
    outer->addSublayer(inner);
    EXPECT_EQ(outer->superlayer(), inner.get());
    EXPECT_TRUE(outer->sublayers().empty());

    const auto view = std::make_shared<NSView>(), other = std::make_shared<NSView>();
    third->addSublayer(layer);
    third->setActions(action("sublayers", [&] { other->setLayer(layer); }));
    view->setLayer(layer);
    EXPECT_EQ(other->layer(), layer);
    EXPECT_EQ(view->layer(), nullptr);
}

TEST_F(Layers, ComeAndGoInOrder) {
    const Layer root = shown({}), layer = shown({});
    std::string log;
    const auto note = [&](const char* text) { return [&log, text] { log += text; }; };
    root->setActions(action("sublayers", note("s")));
    auto actions = action("onOrderIn", note("i"));
    actions.merge(action("onOrderOut", note("o")));
    layer->setActions(std::move(actions));
    root->addSublayer(layer);
    layer->setHidden(true);
    layer->setHidden(true);
    layer->setHidden(false);
    layer->removeFromSuperlayer();
    EXPECT_EQ(log, "isoios");
}

TEST_F(Layers, LayoutFollowsEveryChangeOfWhatItIsMadeOf) {
    const Layer root = shown(NSMakeRect(0, 0, 100, 100));
    const Layer source = shown(NSMakeRect(0, 0, 10, 10), root);
    const Layer layer = shown(NSMakeRect(0, 0, 10, 10), root);
    root->setLayoutManager(std::make_shared<CAConstraintLayoutManager>());
    source->setName("source");
    CATransaction::flush();
    const std::pair<std::function<void()>, double> rows[] {
        {[&] { stayOnRightRelativeTo(*layer, "source", 0); }, 10},
        {[&] { source->setBounds(NSMakeRect(0, 0, 20, 10)); }, 15},
        {[&] { source->setName("another"); }, 15}, // the constraint does not count
        {[&] { layer->setConstraints({{minX, "another", maxX, 1, 2}}); }, 17},
        {[&] { source->removeFromSuperlayer(); }, 17},
    };
    for (const auto& [change, x] : rows) {
        change();
        CATransaction::flush();
        EXPECT_EQ(layer->frame().origin.x, x);
    }
    loop.advance(1);
    // Under the settings of the transaction.
    CATransaction::begin();
    CATransaction::setDisableActions(true);
    anchorLeftRelativeTo(*layer, "superlayer", 50);
    CATransaction::commit();
    CATransaction::flush();
    EXPECT_EQ(shownX(layer), layer->position().x);
}

TEST_F(Layers, AnObserverThatThrowsLeavesTransactionsAndSizesInOrder) {
    const auto view = std::make_shared<NSView>(NSMakeRect(0, 0, 10, 10));
    const Layer root = shown({});
    view->setLayer(root);
    CATransaction::flush();
    const std::string token = addObserverForKeyPath(
        *root, "frame", [](NSObject&, const NSKeyValueChange&) { throw std::runtime_error("no"); });
    EXPECT_THROW(view->setFrame(NSMakeRect(0, 0, 20, 20)), std::runtime_error);
    EXPECT_FALSE(CATransaction::disableActions());
    removeObserverWithBlockToken(*root, token);
    root->setOpacity(0);
    CATransaction::flush();
    EXPECT_EQ(root->animationKeys(), std::vector<std::string> {"opacity"});

    // A turned layer that is stretched does not grow with each layout.
    const Layer turned = shown(NSMakeRect(0, 0, 20, 10), root);
    turned->setAffineTransform({0.8, 0.6, -0.6, 0.8, 0, 0});
    root->setLayoutManager(std::make_shared<CAConstraintLayoutManager>());
    centerHorizontallyRelativeTo(*turned, "superlayer", 2, -2);
    CATransaction::flush();
    EXPECT_EQ(turned->bounds().size, (NSSize {20, 10}));
}

TEST_F(Layers, TellObserversOfTheirValuesAndWhereTheyAre) {
    const auto layer = std::make_shared<CALayer>();
    std::string told;
    for (const std::string key : {"position", "bounds", "frame", "opacity"})
        addObserverForKeyPath(
            *layer, key, [&told, key](NSObject&, const NSKeyValueChange&) { told += key + ' '; });
    const std::pair<std::function<void()>, std::string> rows[] {
        {[&] { layer->setFrame(NSMakeRect(1, 2, 3, 4)); }, "bounds position frame "},
        {[&] { layer->setPosition({5, 5}); }, "position frame "},
        {[&] { layer->setPosition({5, 5}); }, ""},
        {[&] { setValueForKey(*layer, 0.5, "opacity"); }, "opacity "},
        {[&] { layer->setBorderWidth(2); }, ""},
    };
    for (const auto& [change, expected] : rows) {
        told.clear();
        change();
        EXPECT_EQ(told, expected);
    }
}

} // namespace
