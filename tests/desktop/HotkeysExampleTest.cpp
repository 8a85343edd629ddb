// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The example program, run as a user runs it.
#include <tests/support/ChildProcess.h>
#include <tests/support/KeyInjector.h>
#include <tests/support/PrivateDisplay.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <map>
#include <optional>
#include <string>

namespace {

using namespace kw::test;
using testing::HasSubstr;
using testing::Optional;

class HotkeysExampleTest : public testing::Test {
protected:
    PrivateDisplay display;
    KeyInjector user {display.name()};
    std::map<std::string, std::optional<std::string>> environment {{"DISPLAY", display.name()}};
};

TEST_F(HotkeysExampleTest, CountsPressesUntilItIsInterrupted) {
    for (const int signal : {SIGINT, SIGTERM}) {
        ChildProcess example({KW_HOTKEYS_EXAMPLE, "ctrl+alt+k"}, environment);
        EXPECT_THAT(example.readLine(), Optional(HasSubstr("is live")));
        for (const auto* line : {"ctrl+alt+k 1", "ctrl+alt+k 2"}) {
            user.type({XKB_KEY_Control_L, XKB_KEY_Alt_L, XKB_KEY_k});
            EXPECT_EQ(example.readLine(), line);
        }
        example.signal(signal);
        EXPECT_EQ(example.wait(), 0);
    }
}

TEST_F(HotkeysExampleTest, TellsHowTheCombinationStands) {
    const auto f5 = std::to_string(user.keyCode(XKB_KEY_F5));
    ASSERT_TRUE(user.grab(XKB_KEY_F5, XCB_MOD_MASK_4));
    ChildProcess example({KW_HOTKEYS_EXAMPLE, "super+" + f5}, environment);
    EXPECT_THAT(example.readLine(), Optional(HasSubstr("held by another program")));
    user.ungrab(XKB_KEY_F5, XCB_MOD_MASK_4);
    EXPECT_THAT(example.readLine(), Optional(HasSubstr("is live")));
    display.kill();
    EXPECT_THAT(example.readLine(), Optional(HasSubstr("the display is gone")));
}

TEST_F(HotkeysExampleTest, RefusesWhatItCannotDo) {
    const struct {
        std::vector<std::string> arguments;
        bool hasDisplay;
        int exitCode;
        const char* message;
    } rows[] = {
        {{}, true, 2, "usage: 01-hotkeys"},
        {{"hyper+k"}, true, 2, "no modifier 'hyper'"},
        {{"ctrl+nonsense"}, true, 2, "no key 'nonsense'"},
        {{"ctrl+300"}, true, 2, "'ctrl+300' cannot be registered"},
        {{"ctrl+k"}, false, 1, "no X display"},
    };
    for (const auto& row : rows) {
        std::vector<std::string> command {KW_HOTKEYS_EXAMPLE};
        command.insert(command.end(), row.arguments.begin(), row.arguments.end());
        environment["DISPLAY"] = row.hasDisplay ? std::optional(display.name()) : std::nullopt;
        ChildProcess example(command, environment);
        EXPECT_THAT(example.readLine(), Optional(HasSubstr(row.message)));
        EXPECT_EQ(example.wait(), row.exitCode);
    }
}

} // namespace
