// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgWorkspace.h>

#include <tests/support/FakeEnvironment.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

class XdgWorkspaceTest : public testing::Test {
protected:
    /// The path of the application below the folder, or "none".
    std::string find(const std::string& identifier) {
        XdgWorkspace workspace(
            test::FakeEnvironment {{"HOME", folder.path("home")}, {"XDG_DATA_HOME", ""},
                {"XDG_DATA_DIRS", folder.path("one") + ":" + folder.path("two")},
                {"PATH", "relative:" + folder.path("sbin") + ":" + folder.path("bin")}},
            folder.path("Applications"));
        const auto path = workspace.applicationPath(identifier);
        return path ? path->substr(folder.path().size()) : "none";
    }
    void entry(const std::string& path, const std::string& lines) {
        folder.write(path, "[Desktop Entry]\n" + lines + "\n");
    }

    test::TemporaryFolder folder;
};

TEST_F(XdgWorkspaceTest, ApplicationFoldersOfTheUserComeFirst) {
    entry("Applications/B.app/b.desktop", "");
    entry("Applications/A.app/top.desktop", "");
    entry("Applications/A.app/usr/bin/program.desktop", "");
    folder.writeProgram("Applications/A.app/usr/bin/program");
    entry("Applications/A.app/usr/share/documents.desktop", "");
    folder.write("Applications/A.app/usr/share/text", "");
    entry("Applications/A.app/a/b/c/deep.desktop", "");
    folder.writeProgram("Applications/A.app/a/b/c/program");
    entry("Applications/Folder/other.desktop", "");
    entry("home/Applications/Z.app/b.desktop", "Hidden=true");
    entry("home/Applications/Y.app/b.desktop", "");
    std::filesystem::create_directories(folder.path("home/Applications/A.app/top.desktop"));

    EXPECT_EQ(find("b"), "/home/Applications/Y.app");
    EXPECT_EQ(find("top"), "/Applications/A.app");
    EXPECT_EQ(find("program"), "/Applications/A.app");
    for (const auto* const identifier : {"documents", "deep", "other", "B", ""})
        EXPECT_EQ(find(identifier), "none") << identifier;
}

TEST_F(XdgWorkspaceTest, InstalledEntriesLeadToTheirProgram) {
    for (const auto* const program :
        {"bin/player", "opt/my player", "opt/X.app/usr/x", "sbin/tool"})
        folder.writeProgram(program);
    folder.write("sbin/player", "not executable");
    std::filesystem::create_directories(folder.path("bin/folder"));
    std::filesystem::create_symlink("../opt/X.app/usr/x", folder.path("bin/x"));
    const auto opt = folder.path("opt");

    const std::pair<std::string, std::string> rows[] = {
        {"Exec=player %U", "/bin/player"},
        {"Exec=tool\nTryExec=player", "/bin/player"},
        {"Exec=tool\nTryExec=", "/sbin/tool"},
        {"Exec=tool\nTryExec=missing", "none"},
        {"Exec=\"" + opt + "/my player\" --flag", "/opt/my player"},
        {"TryExec=" + opt + "/my\\splayer", "/opt/my player"},
        {"Exec=" + opt + "/X.app/usr/x", "/opt/X.app"},
        {"Exec=x", "/opt/X.app"},
        {"Exec=" + opt + "/missing", "none"},
        {"Exec=../bin/player", "none"},
        {"Exec=folder", "none"},
        {"Exec=%f", "none"},
        {"Exec=\"player", "none"},
        {"Name=No program", "none"},
        {"Hidden=true\nExec=player", "none"},
        {"Hidden=false\nExec=player", "/bin/player"},
    };
    for (const auto& [lines, path] : rows) {
        entry("one/applications/id.desktop", lines);
        EXPECT_EQ(find("id"), path) << lines;
    }
}

TEST_F(XdgWorkspaceTest, TheFirstEntryDecides) {
    for (const auto* const program : {"bin/0", "bin/1", "bin/2"})
        folder.writeProgram(program);
    entry("two/applications/a-b-c.desktop", "Exec=2");
    EXPECT_EQ(find("a-b-c"), "/bin/2");
    entry("one/applications/a/b-c.desktop", "Exec=1");
    EXPECT_EQ(find("a-b-c"), "/bin/1");
    entry("home/.local/share/applications/a/b/c.desktop", "Exec=0");
    EXPECT_EQ(find("a-b-c"), "/bin/0");
    entry("home/.local/share/applications/a-b/c.desktop", "Hidden=true");
    EXPECT_EQ(find("a-b-c"), "/bin/0"); // the shorter folder goes first
    entry("home/.local/share/applications/a-b-c.desktop", "Hidden=true");
    EXPECT_EQ(find("a-b-c"), "none");
    for (const auto& identifier :
        {std::string("a/b-c"), std::string("a/b/c"), std::string("-"), std::string("a-b-c\0", 6)})
        EXPECT_EQ(find(identifier), "none") << identifier;
}

TEST_F(XdgWorkspaceTest, ReadsWhetherAnimationsAreOff) {
    XdgWorkspace workspace(test::FakeEnvironment {{"XDG_CONFIG_HOME", folder.path("config")}});
    const struct {
        const char* file;
        const char* text;
        bool isReduced;
    } rows[] {
        {"gtk-4.0/settings.ini", "[Settings]\ngtk-enable-animations=0\n", true},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations = false", true},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=1\n", false},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0\n", true},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0.000\n", true},
        {"kdeglobals", "[General]\nAnimationDurationFactor=0\n[KDE]\nAnimationDurationFactor=0.5\n",
            false},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(workspace.accessibilityDisplayShouldReduceMotion());
        const auto file = folder.write(std::string("config/") + row.file, row.text);
        EXPECT_EQ(workspace.accessibilityDisplayShouldReduceMotion(), row.isReduced) << row.text;
        std::filesystem::remove(file);
    }
}

} // namespace
