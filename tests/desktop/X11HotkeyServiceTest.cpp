// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11HotkeyService.h>

#include <KWToolkit/hotkeys/HotkeySuspension.h>
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
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
        while (!manager.registeredHotkeys().empty()) {
            const auto [key, hotkey] = *manager.registeredHotkeys().begin();
            const std::uint32_t modifiers = key - hotkey->keycode();
            manager.unregisterHotkey(hotkey->keycode(), modifiers & hotkeyCommandMask,
                modifiers & hotkeyControlMask, modifiers & hotkeyOptionMask,
                modifiers & hotkeyShiftMask);
        }
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
    void pressModifiers() {
        user.press(XKB_KEY_Control_L);
        user.press(XKB_KEY_Alt_L);
    }
    void releaseModifiers() {
        user.release(XKB_KEY_Alt_L);
        user.release(XKB_KEY_Control_L);
    }
    void type(xcb_keysym_t key) { user.type({XKB_KEY_Control_L, XKB_KEY_Alt_L, key}); }

    /// Runs the loop until all that was pressed so far has arrived. Modifiers must be up.
    void settle() {
        const int before = marks;
        user.type({XKB_KEY_F12});
        ASSERT_TRUE(pumpUntil([&] { return marks > before; }));
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

    PrivateDisplay display;
    KeyInjector user {display.name()};
    X11HotkeyService service {display.name()};
    ServiceScope<X11HotkeyService> scope {service};
    KWGlobalHotkeyManager& manager = KWGlobalHotkeyManager::hotkeyManager();
    int marks = 0;
    int presses = 0;
    std::function<void()> count = [this] { ++presses; };
};

class Player : public NSObject {
public:
    static Class& classObject() {
        static Class object("Player", NSObject::classObject(),
            {method("toggle", [](Player& player) { ++player.toggles; })});
        return object;
    }
    Class& isa() const override { return classObject(); }
    int toggles = 0;
};

TEST_F(X11HotkeyServiceTest, PressesReachTheirTargetUnderAnyLock) {
    const struct {
        std::vector<xcb_keysym_t> held;
        bool command, control, option, shift;
    } rows[] = {
        {{}, false, false, false, false},
        {{XKB_KEY_Super_L}, true, false, false, false},
        {{XKB_KEY_Control_R}, false, true, false, false},
        {{XKB_KEY_Alt_L}, false, false, true, false},
        {{XKB_KEY_Shift_L}, false, false, false, true},
        {{XKB_KEY_Super_R, XKB_KEY_Control_L, XKB_KEY_Alt_R, XKB_KEY_Shift_R}, true, true, true,
            true},
    };
    Player players[std::size(rows)];
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto& row = rows[i];
        manager.registerHotkey(user.keyCode(XKB_KEY_k), SEL("toggle"), players[i], row.command,
            row.control, row.option, row.shift);
    }
    int expected = 0;
    for (const int locks : {0, +numLock, +capsLock, numLock | capsLock}) {
        user.lockModifiers(static_cast<std::uint8_t>(locks));
        ++expected;
        for (std::size_t i = 0; i < std::size(rows); ++i) {
            for (const auto key : rows[i].held)
                user.press(key);
            user.type({XKB_KEY_k});
            for (const auto key : rows[i].held)
                user.release(key);
            settle();
            EXPECT_EQ(players[i].toggles, expected) << "row " << i << ", locks " << locks;
        }
    }
    // No press was taken for another.
    for (const Player& player : players)
        EXPECT_EQ(player.toggles, expected);
}

TEST_F(X11HotkeyServiceTest, RegistersNothingThatNoKeyCanBe) {
    EXPECT_TRUE(service.capabilities().isAvailable);
    EXPECT_TRUE(service.capabilities().reportsConflicts);
    const struct {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        bool isSupported;
    } rows[] = {{7, 0, false}, {8, 0, true}, {255, 0, true}, {256, 0, false}, {45, 0x1B00, true},
        {45, 0x0400, false}, {45, 0x10000, false}};
    for (const auto& row : rows) {
        const auto hotkey = service.registerEventHotKey(row.keyCode, row.modifiers, {});
        EXPECT_EQ(hotkey != EventHotKeyRef::none, row.isSupported) << row.keyCode;
        EXPECT_EQ(service.status(hotkey),
            row.isSupported ? HotkeyStatus::live : HotkeyStatus::unsupported);
        service.unregisterEventHotKey(hotkey);
        EXPECT_EQ(service.status(hotkey), HotkeyStatus::unsupported);
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
        settle();
        EXPECT_EQ(presses, 0);
        EXPECT_EQ(news, 0);

        user.ungrab(XKB_KEY_k, XCB_MOD_MASK_ANY);
        EXPECT_TRUE(pumpUntil([&] { return news > 0; }));
        EXPECT_EQ(status(XKB_KEY_k), HotkeyStatus::live);
        type(XKB_KEY_k);
        settle();
        EXPECT_EQ(presses, 1);
        unregisterHotkey(XKB_KEY_k);
        presses = news = 0;
    }
}

TEST_F(X11HotkeyServiceTest, ReplacesAndGivesBack) {
    int replaced = 0;
    registerHotkey(XKB_KEY_k, [&] { ++replaced; });
    registerHotkey(XKB_KEY_j, count);
    registerHotkey(XKB_KEY_k, count);
    type(XKB_KEY_k);
    settle();
    EXPECT_EQ(replaced, 0);
    EXPECT_EQ(presses, 1);

    unregisterHotkey(XKB_KEY_k);
    EXPECT_TRUE(user.grab(XKB_KEY_k, controlAlt));
    EXPECT_FALSE(user.grab(XKB_KEY_j, controlAlt));
    type(XKB_KEY_k);
    settle();
    EXPECT_EQ(presses, 1);
    EXPECT_GT(user.takePresses(), 0);
}

TEST_F(X11HotkeyServiceTest, TellsEachPressOnce) {
    registerHotkey(XKB_KEY_k, count);
    registerHotkey(XKB_KEY_j, count);
    // Modifiers are let go before the key, and a lock changes meanwhile.
    pressModifiers();
    user.press(XKB_KEY_k);
    letRepeat();
    user.lockModifiers(numLock);
    releaseModifiers();
    letRepeat();
    settle();
    EXPECT_EQ(presses, 1);
    user.release(XKB_KEY_k);
    type(XKB_KEY_k);
    settle();
    EXPECT_EQ(presses, 2);

    // Keys that overlap.
    pressModifiers();
    user.press(XKB_KEY_k);
    user.press(XKB_KEY_j);
    user.release(XKB_KEY_k);
    user.release(XKB_KEY_j);
    releaseModifiers();
    settle();
    EXPECT_EQ(presses, 4);
    becomeIdle();
    type(XKB_KEY_j);
    settle();
    EXPECT_EQ(presses, 5);
}

TEST_F(X11HotkeyServiceTest, AKeyThatIsDownAlreadyIsNoPress) {
    const auto expectNothingUntilReleased = [&](const std::function<void()>& takeHotkey) {
        presses = 0;
        pressModifiers();
        user.press(XKB_KEY_k);
        takeHotkey();
        letRepeat();
        releaseModifiers();
        settle();
        EXPECT_EQ(presses, 0);
        user.release(XKB_KEY_k);
        type(XKB_KEY_k);
        settle();
        EXPECT_EQ(presses, 1);
    };
    expectNothingUntilReleased([&] { registerHotkey(XKB_KEY_k, count); });

    std::optional<HotkeySuspension> suspension(std::in_place);
    expectNothingUntilReleased([&] { suspension.reset(); });

    // Where nothing repeats, no event tells of the release.
    unregisterHotkey(XKB_KEY_k);
    pressModifiers();
    user.press(XKB_KEY_k);
    registerHotkey(XKB_KEY_k, count);
    user.release(XKB_KEY_k);
    releaseModifiers();
    becomeIdle();
    type(XKB_KEY_k);
    settle();
    EXPECT_EQ(presses, 2);
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
    settle();
    EXPECT_EQ(presses, 1);
}

TEST_F(X11HotkeyServiceTest, FollowsTheKeyboardMapping) {
    registerHotkey(XKB_KEY_k, count);
    ASSERT_EQ(ChildProcess({"setxkbmap", "-display", display.name(), "us,ru"}).wait(), 0);
    for (const std::uint8_t group : {0, 1}) {
        user.lockGroup(group);
        type(XKB_KEY_k);
        settle();
        EXPECT_EQ(presses, group + 1);
    }
    user.lockGroup(0);

    // Option moves from Mod1 to Mod4, NumLock from Mod2 to Mod3.
    user.setModifierKeys({{XKB_KEY_Shift_L}, {XKB_KEY_Caps_Lock}, {XKB_KEY_Control_L},
        {XKB_KEY_Super_L}, {}, {XKB_KEY_Num_Lock}, {XKB_KEY_Alt_L}, {}});
    presses = 0;
    user.lockModifiers(XCB_MOD_MASK_3);
    EXPECT_TRUE(pumpUntil([&] {
        type(XKB_KEY_k);
        return presses > 0;
    }));
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
    settle();
    EXPECT_EQ(presses, 1);
    unregisterHotkey(XKB_KEY_k);
    EXPECT_TRUE(pumpUntil([&] {
        type(XKB_KEY_k);
        return others > 0;
    }));
}

TEST_F(X11HotkeyServiceTest, ActionsMayDoAnything) {
    registerHotkey(XKB_KEY_k, [&] {
        count();
        unregisterHotkey(XKB_KEY_k);
        registerHotkey(XKB_KEY_j, [&] {
            count();
            throw std::runtime_error("as a host may");
        });
        type(XKB_KEY_j);
        type(XKB_KEY_j);
        EXPECT_THROW(pumpUntil([&] { return false; }), std::runtime_error);
    });
    type(XKB_KEY_k);
    EXPECT_THROW(pumpUntil([&] { return false; }), std::runtime_error);
    EXPECT_EQ(presses, 3);
    registerHotkey(XKB_KEY_j, count);
    type(XKB_KEY_k);
    type(XKB_KEY_j);
    settle();
    EXPECT_EQ(presses, 4);
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

TEST(X11HotkeyServiceWithoutDisplay, KeepsWhatIsRegistered) {
    X11HotkeyService service("no display");
    EXPECT_FALSE(service.capabilities().isAvailable);
    EXPECT_EQ(service.registerEventHotKey(7, 0, {}), EventHotKeyRef::none);
    const auto hotkey = service.registerEventHotKey(45, hotkeyControlMask, {});
    EXPECT_NE(hotkey, EventHotKeyRef::none);
    EXPECT_EQ(service.status(hotkey), HotkeyStatus::unavailable);
    service.setSuspended(true);
    service.setSuspended(false);
    Platform::runLoop().runOnce(0);
    EXPECT_EQ(service.status(hotkey), HotkeyStatus::unavailable);
    service.unregisterEventHotKey(hotkey);
    EXPECT_EQ(service.status(hotkey), HotkeyStatus::unsupported);
}

} // namespace
