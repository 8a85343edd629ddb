// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgLoginItems.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Items = std::vector<LoginItem>;

class XdgLoginItemsTest : public testing::Test {
protected:
    XdgLoginItemsTest() { useProgram("bin/host"); }

    void useProgram(const std::string& relative) {
        const std::string program = folder.writeProgram(relative);
        folder.write(relative,
            "#!/bin/sh\nprintf '%s|%s' \"$0\" \"$KWTOOLKIT_LOGIN_ITEM\" | tr '\\n' ' '; echo\n");
        bundle.values.bundlePath = bundle.values.executablePath = program;
    }
    void entry(const std::string& name, const std::string& lines) {
        folder.write("config/autostart/" + name, "[Desktop Entry]\n" + lines + "\n");
    }
    std::string content(const std::string& name) const {
        return folder.read("config/autostart/" + name);
    }
    std::set<std::string> names() const { return folder.names("config/autostart"); }
    std::vector<std::string> tokens() {
        std::vector<std::string> tokens;
        for (const LoginItem& item : login.read())
            tokens.push_back(item.token);
        return tokens;
    }
    std::error_code add(const std::string& path) {
        return login.update([&](Items& items) { items.insert(items.begin(), {.path = path}); });
    }
    std::error_code addHost() { return add(bundle.values.bundlePath); }

    test::TemporaryFolder folder;
    HeadlessMainBundle bundle;
    const ServiceScope<HeadlessMainBundle> scope {bundle};
    const std::string bin = folder.path("bin");
    const test::FakeEnvironment environment {{"XDG_CONFIG_HOME", folder.path("config")},
        {"XDG_CONFIG_DIRS", folder.path("system")}, {"PATH", bin}};
    XdgLoginItems login {environment};
};

TEST_F(XdgLoginItemsTest, FindsWhatEntriesStart) {
    folder.writeProgram("X.app/x");
    std::filesystem::create_symlink("../X.app/x", bin + "/linked");
    const std::pair<std::string, std::optional<std::string>> rows[] = {
        {"Exec=host --flag %U", bin + "/host"},
        {"Exec=env A=1 \"B=2 3\" host", bin + "/host"},
        {"Exec=/usr/bin/env A=1", std::nullopt},
        {"Exec=env -i host", std::nullopt},
        {"Exec=linked", folder.path("X.app")},
        {"Exec=host\nX-KWToolkit-Path=/a\\sb", "/a b"},
    };
    for (const auto& [lines, path] : rows) {
        entry("a.desktop", lines + "\nX-KWToolkit-Hide=true");
        EXPECT_THAT(login.read(), ElementsAre(LoginItem {path, true, "a.desktop"})) << lines;
    }
}

TEST_F(XdgLoginItemsTest, ListsWhatIsEnabledInOrder) {
    EXPECT_THAT(login.read(), IsEmpty());
    EXPECT_THAT(XdgLoginItems(test::FakeEnvironment {{"HOME", "/none"}}).read(), IsEmpty());
    entry("z.desktop", "");
    entry("b.desktop", "Hidden=false\nX-GNOME-Autostart-enabled=true");
    entry("off.desktop", "Hidden=true");
    entry("off2.desktop", "X-GNOME-Autostart-enabled=false");
    entry("c.desktop", "X-KWToolkit-Position=2");
    entry("d.desktop", "X-KWToolkit-Position=10");
    entry("e.desktop", "X-KWToolkit-Position=many");
    entry("f.txt", "");
    entry(".desktop", "");
    entry("folder.desktop/x", "");
    std::filesystem::create_symlink("z.desktop", folder.path("config/autostart/link.desktop"));
    std::filesystem::create_symlink("none", folder.path("config/autostart/dangling.desktop"));
    EXPECT_THAT(tokens(),
        ElementsAre(
            "d.desktop", "c.desktop", "b.desktop", "e.desktop", "link.desktop", "z.desktop"));
}

TEST_F(XdgLoginItemsTest, AnyNameComesThroughAsItIs) {
    for (std::string name : {"plain", "a b", "\"'$`\\", "%u 100%", "a=b", "new\nline", "é\t#;&"}) {
        useProgram(name + "/host" + name);
        EXPECT_FALSE(login.update(
            [&](Items& items) { items = {{.path = bundle.values.bundlePath, .isHidden = true}}; }));
        const std::string& path = bundle.values.bundlePath;
        EXPECT_THAT(login.read(), ElementsAre(LoginItem {path, true, "org.example.Host.desktop"}));
        // As a desktop does.
        test::ChildProcess started(
            {"gio", "launch", folder.path("config/autostart/org.example.Host.desktop")});
        std::ranges::replace(name, '\n', ' ');
        EXPECT_EQ(started.readLine(),
            folder.path(name + "/host" + name) + "|hidden:" + folder.path(name + "/host" + name));
    }
}

TEST_F(XdgLoginItemsTest, AnImageIsStartedAndNotItsMount) {
    bundle.values.bundlePath = folder.write("Player.AppImage", "");
    EXPECT_FALSE(addHost());
    EXPECT_THAT(content("org.example.Host.desktop"),
        HasSubstr("\nTryExec=" + bundle.values.bundlePath + "\n"));
    bundle.values.bundlePath = folder.path("X.app");
    EXPECT_FALSE(addHost());
    EXPECT_EQ(content("org.example.Host-2.desktop"),
        "[Desktop Entry]\nType=Application\nName=Host\nExec=env KWTOOLKIT_LOGIN_ITEM=shown:"
            + folder.path("X.app ") + bin + "/host\nTryExec=" + bin + "/host\nX-KWToolkit-Path="
            + folder.path("X.app") + "\nX-KWToolkit-Hide=false\nX-GNOME-Autostart-enabled=true\n"
            + "X-KWToolkit-Position=2\n");
    EXPECT_FALSE(addHost()); // once more
    EXPECT_THAT(tokens(), ElementsAre("org.example.Host-2.desktop", "org.example.Host.desktop"));
    // What the host starts inherits the mark.
    for (const auto& [mark, launch] : {std::pair(folder.path("X.app"), LoginLaunch::hidden),
             std::pair(folder.path("Y.app"), LoginLaunch::none)}) {
        const XdgLoginItems started(
            test::FakeEnvironment {{"KWTOOLKIT_LOGIN_ITEM", "hidden:" + mark}});
        EXPECT_EQ(started.launch(), launch);
    }
}

TEST_F(XdgLoginItemsTest, TheSystemsEntriesNeitherComeBackNorGetLost) {
    const std::string entry = "[Desktop Entry]\nExec=host\nX-Odd=1\n";
    for (const char* const place : {"system/autostart/a.desktop", "linked.desktop"})
        folder.write(place, entry);
    std::filesystem::create_directories(folder.path("config/autostart"));
    std::filesystem::create_symlink(
        folder.path("linked.desktop"), folder.path("config/autostart/a.desktop"));
    EXPECT_FALSE(login.update([](Items& items) { items.clear(); }));
    EXPECT_EQ(content("a.desktop"), entry + "Hidden=true\n");
    EXPECT_EQ(folder.read("linked.desktop"), entry);
    std::filesystem::remove(folder.path("config/autostart/a.desktop"));
    EXPECT_FALSE(add(folder.writeProgram("a")));
    EXPECT_THAT(names(), testing::Contains("a-2.desktop"));
    EXPECT_EQ(add(folder.path()), std::errc::invalid_argument);
}

TEST_F(XdgLoginItemsTest, OtherEntriesKeepTheirBytes) {
    const std::string odd = "# mine\r\nno value\n[Desktop Entry]\nExec=host\n\xFF=\xFE\n[X";
    folder.write("config/autostart/a.desktop", odd);
    entry("org.example.Host.desktop", "Hidden=true");
    const std::string target = folder.write("target", odd);
    std::filesystem::create_symlink(target, folder.path("config/autostart/link.desktop"));
    EXPECT_FALSE(login.update([](Items& items) { std::ranges::reverse(items); }));
    EXPECT_FALSE(addHost());
    EXPECT_THAT(tokens(), ElementsAre("org.example.Host-2.desktop", "a.desktop", "link.desktop"));
    EXPECT_EQ(content("a.desktop"), odd);
    EXPECT_FALSE(login.update([](Items& items) { items[1].isHidden = true; }));
    EXPECT_EQ(content("a.desktop"),
        "# mine\r\nno value\n[Desktop Entry]\nExec=host\n\xFF=\xFE\nX-KWToolkit-Hide=true\n[X");
    EXPECT_FALSE(login.update([](Items& items) { items.clear(); }));
    EXPECT_THAT(names(), ElementsAre(".kwtoolkit.lock", "org.example.Host.desktop"));
    EXPECT_EQ(content("org.example.Host.desktop"), "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(folder.read("target"), odd);
}

TEST_F(XdgLoginItemsTest, ItsOwnEntriesKeepWhatUsersAdd) {
    EXPECT_FALSE(addHost());
    EXPECT_FALSE(add(bin + "/host.sh"));
    EXPECT_THAT(tokens(), ElementsAre("host.desktop", "org.example.Host.desktop"));
    folder.write("config/autostart/org.example.Host.desktop",
        content("org.example.Host.desktop") + "X-Odd=1\nHidden=true\n");
    EXPECT_THAT(tokens(), ElementsAre("host.desktop"));
    EXPECT_FALSE(addHost());
    EXPECT_THAT(tokens(), ElementsAre("org.example.Host.desktop", "host.desktop"));
    EXPECT_FALSE(login.update([](Items& items) {
        std::ranges::reverse(items);
        items[1].isHidden = true;
    }));
    EXPECT_THAT(tokens(), ElementsAre("host.desktop", "org.example.Host.desktop"));
    EXPECT_TRUE(login.read()[1].isHidden);
    EXPECT_THAT(content("org.example.Host.desktop"),
        testing::AllOf(HasSubstr("LOGIN_ITEM=hidden:/"), HasSubstr("X-Odd=1\n")));
}

TEST_F(XdgLoginItemsTest, WhatCannotBeKeptIsRefusedBeforeAnythingIsWritten) {
    EXPECT_FALSE(addHost());
    const std::string before = content("org.example.Host.desktop");
    const std::pair<LoginItem, std::errc> rows[] = {
        {{.path = "/a\xFF"}, std::errc::illegal_byte_sequence},
        {{.path = std::nullopt}, std::errc::invalid_argument},
        {{.path = "relative"}, std::errc::invalid_argument},
        {{.path = std::string("/a\0b", 4)}, std::errc::invalid_argument},
        {{.path = "/other", .token = "org.example.Host.desktop"}, std::errc::invalid_argument},
        {{.path = "/a", .token = "unknown.desktop"}, std::errc::invalid_argument},
    };
    for (const auto& [item, error] : rows) {
        EXPECT_EQ(login.update([&](Items& items) { items = {{.path = "/fine"}, item}; }), error);
        EXPECT_THAT(names(), ElementsAre(".kwtoolkit.lock", "org.example.Host.desktop"));
    }
    EXPECT_EQ(
        login.update([](Items& items) { items.push_back(items[0]); }), std::errc::invalid_argument);
    bundle.values.identifier = "a/b";
    EXPECT_EQ(addHost(), std::errc::invalid_argument);
    EXPECT_EQ(content("org.example.Host.desktop"), before);
    EXPECT_EQ(add("/" + std::string(250, 'n')), std::errc::filename_too_long);

    folder.write("blocked/autostart", "");
    XdgLoginItems blocked(test::FakeEnvironment {{"XDG_CONFIG_HOME", folder.path("blocked")}});
    EXPECT_EQ(blocked.update([](Items&) { }), std::errc::not_a_directory);
}

TEST_F(XdgLoginItemsTest, ProcessesLoseNothingOfEachOther) {
    for (int number = 0; number < 200; ++number)
        entry("other" + std::to_string(number) + ".desktop", "Exec=host");
    // Both want the same file name.
    const auto working = [this](const std::string& path) {
        return [this, path](int output) {
            for (int number = 0; number < 10; ++number) {
                std::size_t removed = 0;
                const bool isAdded = !add(path);
                const auto error = login.update([&](Items& items) {
                    removed = std::erase_if(
                        items, [&](const LoginItem& item) { return item.path == path; });
                });
                if (!isAdded || error || removed != 1)
                    test::say(output, "lost; ");
            }
            add(path);
        };
    };
    test::ForkedTask first(working("/first/x"));
    test::ForkedTask second(working("/second/x"));
    EXPECT_EQ(first.result(), "");
    EXPECT_EQ(second.result(), "");
    EXPECT_THAT(login.read(), SizeIs(202));
}

} // namespace
