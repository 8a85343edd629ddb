// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11HotkeyService.h>

#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/Platform.h>
#include <tests/support/KeyInjector.h>
#include <tests/support/PrivateDisplay.h>
#include <tests/support/PumpUntil.h>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using namespace kw;
using namespace kw::test;

class X11HotkeyServiceTest : public testing::Test {
protected:
    PrivateDisplay display;
    KeyInjector user {display.name()};
    X11HotkeyService service {display.name()};
    ServiceScope<X11HotkeyService> scope {service};
    KWGlobalHotkeyManager& manager = KWGlobalHotkeyManager::hotkeyManager();
};

TEST_F(X11HotkeyServiceTest, First) {
    int n = 0;
    manager.registerHotkey(user.keyCode(XKB_KEY_k), {"x", [&] { ++n; }}, true, true, true, true);
    user.type({XKB_KEY_Control_L, XKB_KEY_Alt_L, XKB_KEY_Super_L, XKB_KEY_Shift_L, XKB_KEY_k});
    EXPECT_TRUE(pumpUntil([&] { return n == 1; }));
    user.press(XKB_KEY_Control_L);
    user.press(XKB_KEY_Alt_L);
    user.press(XKB_KEY_Super_L);
    user.press(XKB_KEY_Shift_L);
    user.press(XKB_KEY_k);
    for (int i = 0; i < 20; i++)
        Platform::runLoop().runOnce(0.1);
    EXPECT_EQ(n, 2);
}

} // namespace
