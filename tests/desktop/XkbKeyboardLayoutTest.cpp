// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/XkbKeyboardLayout.h>

#include <tests/support/KeyInjector.h>
#include <tests/support/PrivateDisplay.h>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using namespace kw;
using namespace kw::test;

class XkbKeyboardLayoutTest : public testing::Test {
protected:
    void setLayout(const std::string& name) {
        EXPECT_EQ(
            ChildProcess({"setxkbmap", "-display", display.name(), "-layout", name}).wait(), 0);
    }

    PrivateDisplay display;
    KeyInjector user {display.name()};
    XkbKeyboardLayout layout {display.name()};
};

TEST_F(XkbKeyboardLayoutTest, GivesWhatIsPrintedOnTheKeys) {
    const struct {
        xcb_keysym_t key;
        char16_t plain, shifted;
    } rows[] = {
        {XKB_KEY_k, u'k', u'K'},
        {XKB_KEY_1, u'1', u'!'},
        {XKB_KEY_Return, 0x0D, 0x0D},
        {XKB_KEY_Escape, 0x1B, 0x1B},
        {XKB_KEY_F5, 0, 0},
        {XKB_KEY_KP_Home, 0, 0},
        {XKB_KEY_KP_Add, u'+', u'+'},
    };
    // What is locked or held elsewhere is no part of the answer.
    for (const std::uint8_t locked : {0, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}) {
        user.lockModifiers(locked);
        for (const auto& row : rows) {
            const auto keyCode = user.keyCode(row.key);
            EXPECT_EQ(layout.characterForKeyCode(keyCode), row.plain) << row.key;
            EXPECT_EQ(layout.characterForKeyCode(keyCode, true), row.shifted) << row.key;
        }
    }
    for (const std::uint16_t unknown : {0, 7, 256, 0xFFFF})
        EXPECT_EQ(layout.characterForKeyCode(unknown), 0);
}

TEST_F(XkbKeyboardLayoutTest, FollowsLayoutsAndGroups) {
    const auto y = user.keyCode(XKB_KEY_y);
    const auto bracket = user.keyCode(XKB_KEY_bracketleft);
    EXPECT_EQ(layout.characterForKeyCode(y), u'y');

    setLayout("de");
    EXPECT_EQ(layout.characterForKeyCode(y), u'z');
    EXPECT_EQ(layout.characterForKeyCode(bracket), u'ü');
    EXPECT_EQ(layout.characterForKeyCode(bracket, true), u'Ü');
    EXPECT_EQ(layout.characterForKeyCode(user.keyCode(XKB_KEY_dead_acute)), 0);

    setLayout("us,ru");
    EXPECT_EQ(layout.characterForKeyCode(y), u'y');
    user.lockGroup(1);
    EXPECT_EQ(layout.characterForKeyCode(y), u'н');
    EXPECT_EQ(XkbKeyboardLayout(display.name()).characterForKeyCode(y), u'н');
    user.lockGroup(0);
    EXPECT_EQ(layout.characterForKeyCode(y), u'y');
}

TEST_F(XkbKeyboardLayoutTest, HasNoCharactersWithoutADisplay) {
    const auto k = user.keyCode(XKB_KEY_k);
    EXPECT_EQ(layout.characterForKeyCode(k), u'k');
    display.kill();
    EXPECT_EQ(layout.characterForKeyCode(k), 0);
    EXPECT_EQ(XkbKeyboardLayout("no display").characterForKeyCode(k), 0);
}

} // namespace
