// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Real keys of a real display, through Qt to the views.
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <tests/qt/Window.h>
#include <tests/support/KeyInjector.h>

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using namespace kw;

// Longer than Qt waits for the focus to come back before it deactivates a window.
constexpr int longPress = 300;

class RealKeys : public testing::Test {
protected:
    static bool soon(const std::function<bool()>& condition) { return QTest::qWaitFor(condition); }

    test::KeyInjector user {qEnvironmentVariable("DISPLAY").toStdString()};
};

TEST_F(RealKeys, AreNamedByTheLayoutAndTellWhichModifiersAreHeld) {
    const auto probe = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 40));
    Window window(probe);
    window.click({5, 5});
    const auto flagsBecome = [&](std::uint32_t flags) {
        return soon([&] { return probe->last.modifierFlags == flags; });
    };

    user.press(XKB_KEY_Shift_L);
    EXPECT_TRUE(flagsBecome(NSEventModifierFlagShift));
    user.type({XKB_KEY_k});
    EXPECT_TRUE(soon([&] { return probe->last.charactersIgnoringModifiers == "K"; }));
    EXPECT_EQ(probe->last.keyCode, user.keyCode(XKB_KEY_k));
    user.press(XKB_KEY_Shift_R);
    user.press(XKB_KEY_Alt_L); // with Shift the Meta key, says the layout
    EXPECT_TRUE(flagsBecome(NSEventModifierFlagShift | NSEventModifierFlagOption));
    user.release({XKB_KEY_Shift_R, XKB_KEY_Alt_L});
    EXPECT_TRUE(flagsBecome(NSEventModifierFlagShift));
    user.release(XKB_KEY_Shift_L);
    user.press(XKB_KEY_Super_L);
    EXPECT_TRUE(flagsBecome(NSEventModifierFlagCommand));
    user.release(XKB_KEY_Super_L);
}

TEST_F(RealKeys, ThatSomebodyGrabsAreNoLossOfTheFocus) {
    const auto recorder = std::make_shared<KWHotkeyView>(NSMakeRect(0, 0, 260, 56));
    Window window(recorder);
    window.click({20, 20});
    ASSERT_TRUE(recorder->acceptHotkey());
    ASSERT_TRUE(user.grab(XKB_KEY_j, /*Mod1*/ 8));

    user.press({XKB_KEY_Alt_L, XKB_KEY_j});
    ASSERT_TRUE(soon([&] { return user.takePresses() > 0; }));
    EXPECT_FALSE(QTest::qWaitFor([&] { return !recorder->acceptHotkey(); }, longPress));
    user.release({XKB_KEY_j, XKB_KEY_Alt_L});
    user.ungrab(XKB_KEY_j, 8);

    user.type({XKB_KEY_Alt_L, XKB_KEY_j});
    EXPECT_TRUE(soon([&] { return recorder->registeredHotkey() != nullptr; }));
}

TEST_F(RealKeys, ThatTheProgramHasRegisteredAreRecordedAllTheSame) {
    const auto recorder = std::make_shared<KWHotkeyView>(NSMakeRect(0, 0, 260, 56));
    Window window(recorder);
    auto& hotkeys = KWGlobalHotkeyManager::hotkeyManager();
    int presses = 0;
    const auto keyCode = user.keyCode(XKB_KEY_k);
    hotkeys.registerHotkey(keyCode, {"count", [&] { ++presses; }}, false, false, true, false);
    ASSERT_EQ(hotkeys.statusOfHotkey(keyCode, false, false, true, false), HotkeyStatus::live);

    user.type({XKB_KEY_Alt_L, XKB_KEY_k});
    EXPECT_TRUE(soon([&] { return presses == 1; }));
    window.click({20, 20});
    user.type({XKB_KEY_Alt_L, XKB_KEY_k});
    ASSERT_TRUE(soon([&] { return recorder->registeredHotkey() != nullptr; }));
    EXPECT_EQ(hotkeyFromRecord(*recorder->registeredHotkey()),
        (Hotkey {.hasKey = true, .keycode = keyCode, .character = u'k', .option = true}));
    EXPECT_EQ(presses, 1);
    user.type({XKB_KEY_Alt_L, XKB_KEY_k});
    EXPECT_TRUE(soon([&] { return presses == 2; }));
    hotkeys.unregisterHotkey(keyCode, false, false, true, false);
}

} // namespace
