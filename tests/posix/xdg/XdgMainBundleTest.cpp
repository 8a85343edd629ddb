// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgMainBundle.h>

#include <tests/support/FakeEnvironment.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

/// One line a field, with the folder's path left out.
std::string described(const BundleInfo& info, const test::TemporaryFolder& folder) {
    std::string text;
    for (const auto& field : {info.name, info.identifier, info.version, info.executable,
             info.bundlePath, info.executablePath, info.resourcePath})
        text +=
            (field.starts_with(folder.path()) ? field.substr(folder.path().size()) : field) + "|";
    return text;
}

const std::string player = "[Desktop Entry]\nName=The Player\nName[de]=Der Spieler\n"
                           "Exec=\"/usr/bin/player\" %U\nX-AppImage-Version=1\n";

TEST(XdgMainBundle, KnowsABareProgramByItsPath) {
    const test::TemporaryFolder folder;
    folder.write("other.desktop", player);
    const auto program = folder.writeProgram("player (deleted)");
    const std::pair<std::string, std::string> rows[] = {
        {program, "player (deleted)||player (deleted)|/player (deleted)|/player (deleted)||"},
        {folder.path("gone (deleted)"), "gone||gone|/gone|/gone||"},
        {folder.path("gone"), "gone||gone|/gone|/gone||"},
        {folder.path(".app/x"), "x||x|/.app/x|/.app/x||"},
    };
    for (const auto& [path, rest] : rows) {
        const auto name = rest.substr(0, rest.find('|'));
        EXPECT_EQ(described(XdgMainBundle(path, test::FakeEnvironment()).info(), folder),
            name + "|" + rest)
            << path;
    }
    EXPECT_EQ(XdgMainBundle().info().executable, "posix_tests");
}

TEST(XdgMainBundle, TakesTheNearestApplicationFolder) {
    const std::string program = "Outer.app/My.Player.app/bin/player";
    const std::string paths =
        "player|/Outer.app/My.Player.app|/" + program + "|/Outer.app/My.Player.app/Resources|";
    const std::string other =
        "[Desktop Entry]\nName=Other\nExec=other player\nX-AppImage-Version=9";
    const struct {
        std::vector<std::pair<std::string, std::string>> files; // in the nearest folder
        std::string description;
    } rows[] = {
        {{}, "My.Player|player||"},
        {{{"org.x.P.desktop", player}}, "The Player|org.x.P|1|"},
        {{{"a.desktop", other}, {"b.desktop", other}}, "Other|a|9|"},
        {{{"a.desktop", other}, {"b.desktop", player}}, "The Player|b|1|"},
        {{{"a.desktop", other}, {"c.desktop", "[Desktop Entry]\nTryExec=/x/player\n"}},
            "My.Player|c||"},
        {{{"b.desktop", player}, {"bin/a.desktop", other}}, "Other|a|9|"},
        {{{"a.desktop", player + "X-KWToolkit-Version=2 \\sb\nName=\n"}}, "My.Player|a|2  b|"},
        {{{"a.desktop", "[Other]\nName=Other\n[Desktop Entry"}, {".desktop", player}},
            "My.Player|a||"},
    };
    for (const auto& row : rows) {
        const test::TemporaryFolder folder;
        folder.writeProgram(program);
        folder.write("Outer.app/z.desktop", player);
        for (const auto& [name, text] : row.files)
            folder.write("Outer.app/My.Player.app/" + name, text);
        const XdgMainBundle bundle(folder.path(program), test::FakeEnvironment());
        EXPECT_EQ(described(bundle.info(), folder), row.description + paths);
    }
}

TEST(XdgMainBundle, AnAppImageIsItsFile) {
    const test::TemporaryFolder folder;
    const auto image = folder.write("Player.AppImage", "");
    const auto mounted = folder.path("mounted");
    const auto inside = folder.writeProgram("mounted/usr/X.app/player");
    const auto outside = folder.writeProgram("mounted2/tool");
    folder.write("mounted/org.x.Player.desktop", player);
    folder.write("mounted/aaa.desktop", "[Desktop Entry]\nName=Other\nExec=other");
    std::filesystem::create_directory_symlink(mounted, folder.path("link"));

    const std::string asImage = "The Player|org.x.Player|1|player|/Player.AppImage|"
                                "/mounted/usr/X.app/player|/mounted/Resources|";
    const std::string asFolder = "X|player||player|/mounted/usr/X.app|/mounted/usr/X.app/player|"
                                 "/mounted/usr/X.app/Resources|";
    const std::string asTool = "tool|tool||tool|/mounted2/tool|/mounted2/tool||";
    const struct {
        std::string program, image, folder, description;
    } rows[] = {
        {inside, image, mounted, asImage},
        {inside, image, mounted + "/", asImage},
        {inside, image, folder.path("mounted2"), asFolder},
        {inside, folder.path("missing"), mounted, asFolder},
        {inside, mounted, mounted, asFolder},
        {inside, "", mounted, asFolder},
        {inside, image, folder.path("missing"), asFolder},
        {outside, image, mounted, asTool},
        {outside, image, "", "tool|tool||tool|/Player.AppImage|/mounted2/tool||"},
    };
    for (const auto& row : rows) {
        const XdgMainBundle bundle(
            row.program, test::FakeEnvironment {{"APPIMAGE", row.image}, {"APPDIR", row.folder}});
        EXPECT_EQ(described(bundle.info(), folder), row.description) << row.image << row.folder;
    }
    const XdgMainBundle linked(
        inside, test::FakeEnvironment {{"APPIMAGE", image}, {"APPDIR", folder.path("link")}});
    EXPECT_EQ(linked.info().bundlePath, image);
}

} // namespace
