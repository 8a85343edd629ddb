// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11HotkeyService.h>

#include <KWToolkit/hotkeys/HotkeySuspension.h>
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/Platform.h>
#include <tests/support/KeyInjector.h>
#include <tests/support/PrivateDisplay.h>
#include <tests/support/PumpUntil.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using namespace kw;
using namespace kw::test;

constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr std::uint16_t numLock = XCB_MOD_MASK_2;
constexpr std::uint16_t capsLock = XCB_MOD_MASK_LOCK;

class X11HotkeyServiceTest : public testing::Test {
protected:
    X11HotkeyServiceTest() {
        manager.registerHotkey(
            user.keyCode(XKB_KEY_F12), {"mark", [this] { ++marks; }}, false, false, false, false);
    }
    ~X11HotkeyServiceTest() override {
        manager.setStatusChangeHandler(nullptr);
        while (!manager.registeredHotkeys().empty())
            manager.unregisterHotkey(
                manager.registeredHotkeys().begin()->first, false, false, false, false);
    }

    /// Control+Option with the key.
    void registerHotkey(xcb_keysym_t key, std::function<void()> action) {
        manager.registerHotkey(
            user.keyCode(key), {"act", std::move(action)}, false, true, true, false);
    }
    void unregisterHotkey(xcb_keysym_t key) {
        manager.unregisterHotkey(user.keyCode(key), false, true, true, false);
    }
    std::optional<HotkeyStatus> status(xcb_keysym_t key) {
        return manager.statusOfHotkey(user.keyCode(key), false, true, true, false);
    }
    void type(xcb_keysym_t key) { user.type({XKB_KEY_Control_L, XKB_KEY_Alt_L, key}); }

    /// Runs the loop until all that was pressed so far has arrived. Modifiers must be up.
    void settle() {
        const int before = marks;
        user.type({XKB_KEY_F12});
        ASSERT_TRUE(pumpUntil([&] { return marks > before; }));
    }
    int settledPresses() {
        settle();
        return presses;
    }

    /// Runs the loop while the server repeats a key that is held down.
    void letRepeat() {
        int happened = 0;
        ASSERT_TRUE(pumpUntil([&] { return happened++ == 15; }));
    }

    /// Runs the loop until nothing is left to do, such as looking after a key that is held down.
    void becomeIdle() {
        ASSERT_TRUE(pumpUntil([] { return !Platform::runLoop().runOnce(0.1); }));
    }

    /// Runs the loop, pressing the key again and again, until the count goes up.
    bool typeUntilCounted(xcb_keysym_t key, const int& counted) {
        const int before = counted;
        return pumpUntil([&] {
            type(key);
            return counted > before;
        });
    }

    PrivateDisplay display;
    KeyInjector user {display.name()};
    X11HotkeyService service {display.name()};
    ServiceScope<X11HotkeyService> scope {service};
    KWGlobalHotkeyManager& manager = KWGlobalHotkeyManager::hotkeyManager();
    int marks = 0;
    int presses = 0;
    std::function<void()> count = [this] { ++presses; };
};

TEST_F(X11HotkeyServiceTest, PressesReachTheirRegistrationUnderAnyLock) {
    struct Row {
        std::vector<xcb_keysym_t> held;
        bool command, control, option, shift;
        int presses = 0;
    } rows[] = {
        {{}, false, false, false, false},
        {{XKB_KEY_Super_L}, true, false, false, false},
        {{XKB_KEY_Control_R}, false, true, false, false},
        {{XKB_KEY_Alt_L}, false, false, true, false},
        {{XKB_KEY_Shift_L}, false, false, false, true},
        {{XKB_KEY_Super_R, XKB_KEY_Control_L, XKB_KEY_Alt_R, XKB_KEY_Shift_R}, true, true, true,
            true},
    };
    for (Row& row : rows)
        manager.registerHotkey(user.keyCode(XKB_KEY_k), {"count", [&row] { ++row.presses; }},
            row.command, row.control, row.option, row.shift);
    for (const int locks : {0, +numLock, +capsLock, numLock | capsLock}) {
        user.lockModifiers(static_cast<std::uint8_t>(locks));
        for (Row& row : rows) {
            user.press(row.held);
            user.type({XKB_KEY_k});
            user.release(row.held);
            ASSERT_NO_FATAL_FAILURE(settle());
            // Once, and for no other.
            EXPECT_EQ(std::exchange(row.presses, 0), 1) << &row - rows << ", locks " << locks;
            for (const Row& other : rows)
                EXPECT_EQ(other.presses, 0);
        }
    }
}

TEST_F(X11HotkeyServiceTest, RegistersNothingThatNoKeyCanBe) {
    X11HotkeyService unavailable("no display");
    EXPECT_TRUE(service.capabilities().isAvailable);
    EXPECT_FALSE(unavailable.capabilities().isAvailable);
    const struct {
        std::uint32_t keyCode, modifiers;
        bool isSupported;
    } rows[] = {{7, 0, false}, {8, 0, true}, {255, 0, true}, {256, 0, false}, {45, 0x1B00, true},
        {45, 0x0400, false}, {45, 0x10000, false}};
    for (const auto& row : rows) {
        for (X11HotkeyService* asked : {&service, &unavailable}) {
            const auto hotkey = asked->registerEventHotKey(row.keyCode, row.modifiers, {});
            EXPECT_EQ(hotkey != EventHotKeyRef::none, row.isSupported) << row.keyCode;
            asked->setSuspended(true);
            asked->setSuspended(false);
            Platform::runLoop().runOnce(0);
            EXPECT_EQ(asked->status(hotkey),
                !row.isSupported        ? HotkeyStatus::unsupported
                    : asked == &service ? HotkeyStatus::live
                                        : HotkeyStatus::unavailable);
            asked->unregisterEventHotKey(hotkey);
            EXPECT_EQ(asked->status(hotkey), HotkeyStatus::unsupported);
        }
    }
}

TEST_F(X11HotkeyServiceTest, WaitsForWhatAnotherClientHolds) {
    int news = 0;
    manager.setStatusChangeHandler([&] { ++news; });
    const std::uint16_t variants[] = {
        controlAlt, controlAlt | numLock, controlAlt | numLock | capsLock};
    for (const std::uint16_t held : variants) {
        ASSERT_TRUE(user.grab(XKB_KEY_k, held));
        registerHotkey(XKB_KEY_k, count);
        EXPECT_EQ(status(XKB_KEY_k), HotkeyStatus::heldElsewhere);
        // All or nothing: the variants that were free are free again.
        for (const std::uint16_t free : variants)
            EXPECT_TRUE(user.grab(XKB_KEY_k, free));
        type(XKB_KEY_k);
        EXPECT_EQ(settledPresses(), 0);
        EXPECT_EQ(news, 0);

        user.ungrab(XKB_KEY_k, XCB_MOD_MASK_ANY);
        EXPECT_TRUE(pumpUntil([&] { return news > 0; }));
        EXPECT_EQ(status(XKB_KEY_k), HotkeyStatus::live);
        type(XKB_KEY_k);
        EXPECT_EQ(settledPresses(), 1);
        unregisterHotkey(XKB_KEY_k);
        presses = news = 0;
    }
}

TEST_F(X11HotkeyServiceTest, ReplacesAndGivesBack) {
    registerHotkey(XKB_KEY_k, [] { ADD_FAILURE() << "was replaced"; });
    registerHotkey(XKB_KEY_j, count);
    registerHotkey(XKB_KEY_k, count);
    type(XKB_KEY_k);
    EXPECT_EQ(settledPresses(), 1);

    unregisterHotkey(XKB_KEY_k);
    EXPECT_TRUE(user.grab(XKB_KEY_k, controlAlt));
    EXPECT_FALSE(user.grab(XKB_KEY_j, controlAlt));
    type(XKB_KEY_k);
    EXPECT_EQ(settledPresses(), 1);
    EXPECT_GT(user.takePresses(), 0);
}

TEST_F(X11HotkeyServiceTest, TellsEachPressOnce) {
    registerHotkey(XKB_KEY_k, count);
    registerHotkey(XKB_KEY_j, count);
    // Modifiers are let go before the key, and a lock changes meanwhile.
    user.press({XKB_KEY_Control_L, XKB_KEY_Alt_L, XKB_KEY_k});
    letRepeat();
    user.lockModifiers(numLock);
    user.release({XKB_KEY_Control_L, XKB_KEY_Alt_L});
    letRepeat();
    EXPECT_EQ(settledPresses(), 1);
    user.release(XKB_KEY_k);
    type(XKB_KEY_k);
    EXPECT_EQ(settledPresses(), 2);

    // Keys that overlap.
    user.press({XKB_KEY_Control_L, XKB_KEY_Alt_L, XKB_KEY_k, XKB_KEY_j});
    user.release({XKB_KEY_k, XKB_KEY_j, XKB_KEY_Alt_L, XKB_KEY_Control_L});
    EXPECT_EQ(settledPresses(), 4);
    becomeIdle();
    type(XKB_KEY_j);
    EXPECT_EQ(settledPresses(), 5);
}

TEST_F(X11HotkeyServiceTest, AKeyThatIsDownAlreadyIsNoPress) {
    const auto expectNothingUntilReleased = [&](const std::function<void()>& takeHotkey) {
        presses = 0;
        user.press({XKB_KEY_Control_L, XKB_KEY_Alt_L, XKB_KEY_k});
        takeHotkey();
        letRepeat();
        user.release({XKB_KEY_Alt_L, XKB_KEY_Control_L});
        EXPECT_EQ(settledPresses(), 0);
        user.release(XKB_KEY_k);
        type(XKB_KEY_k);
        EXPECT_EQ(settledPresses(), 1);
    };
    expectNothingUntilReleased([&] { registerHotkey(XKB_KEY_k, count); });

    std::optional<HotkeySuspension> suspension(std::in_place);
    expectNothingUntilReleased([&] { suspension.reset(); });

    // Where nothing repeats, no event tells of the release.
    unregisterHotkey(XKB_KEY_k);
    user.press({XKB_KEY_Control_L, XKB_KEY_Alt_L, XKB_KEY_k});
    registerHotkey(XKB_KEY_k, count);
    user.release({XKB_KEY_k, XKB_KEY_Alt_L, XKB_KEY_Control_L});
    becomeIdle();
    type(XKB_KEY_k);
    EXPECT_EQ(settledPresses(), 2);
}

TEST_F(X11HotkeyServiceTest, LetsKeysGoWhileSuspended) {
    registerHotkey(XKB_KEY_k, count);
    type(XKB_KEY_k); // told to nobody: the suspension comes first
    {
        const HotkeySuspension suspension;
        registerHotkey(XKB_KEY_j, count);
        EXPECT_TRUE(user.grab(XKB_KEY_k, controlAlt));
        EXPECT_TRUE(user.grab(XKB_KEY_j, controlAlt));
        type(XKB_KEY_k);
        EXPECT_GT(user.takePresses(), 0);
        EXPECT_EQ(status(XKB_KEY_k), HotkeyStatus::live);
        EXPECT_EQ(status(XKB_KEY_j), HotkeyStatus::live);
        user.ungrab(XKB_KEY_j, controlAlt);
    }
    EXPECT_EQ(status(XKB_KEY_k), HotkeyStatus::heldElsewhere);
    type(XKB_KEY_j);
    EXPECT_EQ(settledPresses(), 1);
}

TEST_F(X11HotkeyServiceTest, FollowsTheKeyboardMapping) {
    registerHotkey(XKB_KEY_k, count);
    ASSERT_EQ(ChildProcess({"setxkbmap", "-display", display.name(), "us,ru"}).wait(), 0);
    for (const std::uint8_t group : {1, 0}) {
        user.lockGroup(group);
        type(XKB_KEY_k);
        EXPECT_EQ(settledPresses(), 2 - group);
    }

    // Option moves from Mod1 to Mod4, NumLock from Mod2 to Mod3.
    user.setModifierKeys({{XKB_KEY_Shift_L}, {XKB_KEY_Caps_Lock}, {XKB_KEY_Control_L},
        {XKB_KEY_Super_L}, {}, {XKB_KEY_Num_Lock}, {XKB_KEY_Alt_L}, {}});
    user.lockModifiers(XCB_MOD_MASK_3);
    EXPECT_TRUE(typeUntilCounted(XKB_KEY_k, presses));
    EXPECT_TRUE(user.grab(XKB_KEY_k, controlAlt));
    user.ungrab(XKB_KEY_k, controlAlt);
    user.lockModifiers(0);

    // Command and Option on one modifier are one combination, which the older registration has.
    user.setModifierKeys({{XKB_KEY_Shift_L}, {XKB_KEY_Caps_Lock}, {XKB_KEY_Control_L}, {},
        {XKB_KEY_Num_Lock}, {}, {XKB_KEY_Alt_L, XKB_KEY_Super_L}, {}});
    becomeIdle();
    int others = 0;
    manager.registerHotkey(
        user.keyCode(XKB_KEY_k), {"other", [&] { ++others; }}, true, true, false, false);
    presses = 0;
    type(XKB_KEY_k);
    EXPECT_EQ(settledPresses(), 1);
    unregisterHotkey(XKB_KEY_k);
    EXPECT_TRUE(typeUntilCounted(XKB_KEY_k, others));
}

TEST_F(X11HotkeyServiceTest, ActionsMayDoAnything) {
    const auto throwAfterCounting = [&] {
        count();
        throw std::runtime_error("as a host may");
    };
    const auto runForever = [] { pumpUntil([] { return false; }); };
    registerHotkey(XKB_KEY_k, [&] {
        count();
        unregisterHotkey(XKB_KEY_k);
        registerHotkey(XKB_KEY_j, throwAfterCounting);
        type(XKB_KEY_j);
        type(XKB_KEY_j);
        EXPECT_THROW(runForever(), std::runtime_error);
    });
    type(XKB_KEY_k);
    EXPECT_THROW(runForever(), std::runtime_error);
    EXPECT_EQ(presses, 3);
    registerHotkey(XKB_KEY_j, count);
    type(XKB_KEY_k);
    type(XKB_KEY_j);
    EXPECT_EQ(settledPresses(), 4);
}

TEST_F(X11HotkeyServiceTest, OutlivesItsServer) {
    int news = 0;
    service.setStatusChangeHandler([&] { ++news; });
    const auto keyCode = user.keyCode(XKB_KEY_k);
    const auto hotkey = service.registerEventHotKey(keyCode, hotkeyControlMask, {});
    EXPECT_EQ(service.status(hotkey), HotkeyStatus::live);
    display.kill();
    // Before the loss was noticed.
    const auto other = service.registerEventHotKey(keyCode, hotkeyOptionMask, {});
    EXPECT_EQ(service.status(other), HotkeyStatus::unavailable);
    EXPECT_TRUE(pumpUntil([&] { return news == 1; }));
    EXPECT_EQ(service.status(hotkey), HotkeyStatus::unavailable);
    EXPECT_FALSE(service.capabilities().isAvailable);
    service.unregisterEventHotKey(other);
    Platform::runLoop().runOnce(0);
    EXPECT_FALSE(Platform::runLoop().runOnce(0)); // nothing keeps the loop busy

    display.restart();
    EXPECT_TRUE(pumpUntil([&] { return news == 2; }));
    EXPECT_EQ(service.status(hotkey), HotkeyStatus::live);
}

} // namespace
