// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/headless/HeadlessAlertService.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <KWToolkit/platform/ui/NSAnimation.h>
#include <KWToolkit/windows/KWTranFadeWindow.h>
#include <KWToolkit/windows/NSAlert+SimpleAlert.h>
#include <KWToolkit/windows/NSPanel+Fade.h>
#include <KWToolkit/windows/NSWindow+Fade.h>
#include <KWToolkit/windows/NSWindow+SmartResize.h>
#include <tests/unit/windows/HeadlessWindows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace kw;
using testing::ElementsAre;

constexpr unsigned titled = NSWindowStyleMaskTitled;
constexpr auto buffered = NSBackingStoreType::buffered;

struct Windows : testing::Test, test::HeadlessWindows {
    /// What the window shows of itself is 1 unless it fades.
    bool isRising() { return std::ranges::is_sorted(native().opacities); }
    bool isFalling() { return std::ranges::is_sorted(native().opacities, std::greater()); }
};

TEST_F(Windows, ResizeWithinTheLimitsOfTheFrameFromTheUpperLeftCorner) {
    const double infinite = std::numeric_limits<double>::infinity();
    const struct {
        NSSize smallest, largest, size, expected;
    } rows[] = {
        {{}, {1e6, 1e6}, {500, 400}, {500, 400}}, {{}, {1e6, 1e6}, {300.1, 0.1}, {300.1F, 0.1F}},
        {{200, 150}, {1e6, 1e6}, {100, 100}, {200, 150}},
        {{200, 150}, {600, 500}, {1000, 160}, {600, 160}},
        {{200, 150}, {100, 120}, {150, 150}, {100, 120}}, // the largest counts
        {{0.1, 0.1}, {0.7, 0.7}, {infinite, -infinite}, {0.7F, 0.1F}}, // limits are narrowed, too
    };
    for (const auto& row : rows) {
        NSWindow window({{50, 60}, {300, 200}}, titled, buffered, false);
        window.setMinSize(row.smallest);
        window.setMaxSize(row.largest);
        resizeWindowToSize(window, row.size);
        const NSRect content = window.contentRectForFrameRect(window.frame());
        EXPECT_EQ(content.size.width, row.expected.width);
        EXPECT_DOUBLE_EQ(content.size.height, row.expected.height);
        EXPECT_DOUBLE_EQ(NSMaxY(window.frame()), 60 + 200 + 22);
        EXPECT_EQ(window.frame().origin.x, 50);
        EXPECT_DOUBLE_EQ(window.contentView()->frame().size.height, row.expected.height);
    }
}

TEST_F(Windows, AnimateAFrameOnlyIfToldSo) {
    NSWindow window({{0, 0}, {100, 100}}, titled, buffered, false);
    window.orderFront();
    resizeWindowToSize(window, {200, 100});
    EXPECT_EQ(native().frames.size(), 2u);

    const NSRect target = NSMakeRect(0, -300, 200, 422);
    EXPECT_DOUBLE_EQ(window.animationResizeTime(target), 0.2 * 300 / 150);
    resizeWindowToSize(window, {200, 400}, true);
    EXPECT_EQ(window.frame(), target); // at once
    loop.advance(0.2);
    EXPECT_NEAR(native().frame().size.height, 122 + 150, 1); // half-way
    loop.advance(0.201);
    EXPECT_EQ(native().frame(), target);
    EXPECT_NEAR(native().frames.size(), 2 + 0.4 * 60, 2);

    window.setFrame(NSMakeRect(0, 0, 500, 500), true, true);
    loop.advance(0.1);
    window.setFrame(NSMakeRect(1, 2, 3, 4), true); // ends it
    loop.advance(1);
    EXPECT_EQ(window.frame(), NSMakeRect(1, 2, 3, 4));
    window.setFrame(NSMakeRect(0, 0, std::nan(""), 4), true);
    EXPECT_EQ(window.frame(), NSMakeRect(1, 2, 3, 4));
}

TEST_F(Windows, FadingOnesHaveNoFrameWhateverIsAskedFor) {
    KWTranFadeWindow window({{0, 0}, {10, 10}}, titled, NSBackingStoreType::retained, true);
    EXPECT_EQ(window.styleMask(), NSWindowStyleMaskBorderless);
    EXPECT_EQ(window.backingType(), buffered);
    EXPECT_EQ(window.backgroundColor(), NSColor::clearColor());
    EXPECT_FALSE(window.isOpaque());
    window.contentView()->mouseDown({});
    EXPECT_EQ(native().moves, 1);
    window.makeKeyAndOrderFront();
    EXPECT_TRUE(window.isKeyWindow());
    NSWindow plain({{0, 0}, {10, 10}}, NSWindowStyleMaskBorderless, buffered, false);
    plain.makeKeyAndOrderFront();
    EXPECT_FALSE(plain.isKeyWindow());
}

TEST_F(Windows, FadeInFromTheBeginningAndOutUntilTheEnd) {
    auto window = std::make_shared<KWTranFadeWindow>(NSMakeRect(0, 0, 10, 10));
    window->setAlphaValue(0.5);
    native().opacities.clear();
    send<void>(*window, SEL("fadeIn:"), nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(native().opacities.back(), 0);
    loop.advance(0.25);
    EXPECT_NEAR(native().opacities.back(), 0.25, 1e-3);
    loop.advance(0.25);
    EXPECT_EQ(native().opacities.back(), 0.5);
    EXPECT_TRUE(isRising());
    EXPECT_NEAR(native().opacities.size(), 0.5 * 60, 3);

    native().opacities.clear();
    send<void>(*window, SEL("fadeOut:"), window);
    loop.advance(0.499);
    EXPECT_TRUE(window->isVisible());
    EXPECT_LT(native().opacities.back(), 0.01);
    EXPECT_TRUE(isFalling());
    loop.advance(0.002);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(native().opacities.back(), 0.5); // as it can be shown again
    EXPECT_EQ(window->alphaValue(), 0.5);
}

TEST_F(Windows, FadesDoNotKnowOfEachOther) {
    auto panel = std::make_shared<NSPanel>(NSMakeRect(0, 0, 10, 10), titled, buffered, false);
    panel->orderFront();
    fadeOut(*panel);
    loop.advance(0.25);
    fadeIn(*panel);
    EXPECT_EQ(native().opacities.back(), 0);
    loop.advance(0.2);
    EXPECT_GT(native().opacities.back(), 0.25); // of the later one: the other is at 0.02
    EXPECT_TRUE(panel->isVisible());
    loop.advance(0.06);
    EXPECT_FALSE(panel->isVisible());
    loop.advance(0.5);
    EXPECT_EQ(native().opacities.back(), 1);
}

TEST_F(Windows, AreKeptByAFadeIfTheyAreShared) {
    auto shared = std::make_shared<KWTranFadeWindow>(NSMakeRect(0, 0, 10, 10));
    auto own = std::make_unique<KWTranFadeWindow>(NSMakeRect(0, 0, 10, 10));
    shared->fadeIn();
    own->fadeIn();
    shared.reset();
    loop.advance(0.1);
    own.reset();
    EXPECT_EQ(service.windows.size(), 1u);
    loop.advance(0.5);
    EXPECT_TRUE(service.windows.empty());
}

TEST_F(Windows, ReduceMotionWhereTheHostHonorsIt) {
    HeadlessWorkspace workspace;
    workspace.reducesMotion = true;
    const ServiceScope scope(workspace);
    for (const bool honors : {false, true}) {
        NSAnimation::setHonorsReducedMotion(honors);
        KWTranFadeWindow window(NSMakeRect(0, 0, 10, 10));
        window.fadeIn();
        EXPECT_EQ(native().opacities.back(), honors ? 1 : 0);
        EXPECT_TRUE(window.isVisible());
        window.fadeOut();
        EXPECT_EQ(window.isVisible(), !honors);
    }
    NSAnimation::setHonorsReducedMotion(false);
}

TEST_F(Windows, CloseUnlessTheDelegateRefuses) {
    struct Delegate : NSObject {
        bool windowShouldClose(NSWindow&) { return agrees; }
        static Class& classObject() {
            static auto& object = *new Class("WindowDelegate", NSObject::classObject(),
                {method("windowShouldClose:", &Delegate::windowShouldClose)});
            return object;
        }
        Class& isa() const override { return classObject(); }
        bool agrees = false;
    } delegate;
    NSWindow window({{0, 0}, {10, 10}}, titled, buffered, false);
    window.setDelegate(delegate);
    int told = 0;
    auto& center = NSNotificationCenter::defaultCenter();
    const auto observer = center.addObserver(
        NSWindowWillCloseNotification, &window, [&](const NSNotification&) { ++told; });
    window.orderFront();
    EXPECT_FALSE(window.performClose());
    delegate.agrees = true;
    EXPECT_TRUE(window.performClose());
    window.close(); // is closed already
    EXPECT_EQ(told, 1);
    center.removeObserver(observer);

    auto own = std::make_unique<NSWindow>(NSMakeRect(0, 0, 1, 1), titled, buffered, false);
    own->orderFront();
    const auto destroyer = center.addObserver(
        NSWindowWillCloseNotification, own.get(), [&](const NSNotification&) { own.reset(); });
    own->close(); // by an observer that destroys it
    center.removeObserver(destroyer);
}

TEST(SimpleAlert, WarnsWithOneButton) {
    HeadlessAlertService alerts;
    const ServiceScope scope(alerts);
    simpleWarningAlertWithTitle("Title", "Text", "Understood");
    ASSERT_EQ(alerts.shown.size(), 1u);
    const NSAlert& alert = alerts.shown[0];
    EXPECT_THAT(alert.buttons(), ElementsAre("Understood"));
    EXPECT_EQ(alert.messageText() + "/" + alert.informativeText(), "Title/Text");
    EXPECT_EQ(static_cast<int>(alert.alertStyle()), 0);
}

} // namespace
