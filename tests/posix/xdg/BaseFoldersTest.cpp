// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/BaseFolders.h>

#include <backends/linux/posix/LocaleName.h>
#include <backends/linux/xdg/XdgSearchPaths.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace {

using namespace kw;
using testing::ElementsAre;
using Strings = std::vector<std::string>;

TEST(BaseFolders, RelativePathsCountAsNotSet) {
    const test::FakeEnvironment none {{"HOME", "/home/u/"}};
    const test::FakeEnvironment relative {{"HOME", "/home/u"}, {"XDG_CONFIG_HOME", "config"},
        {"XDG_DATA_HOME", "./data"}, {"XDG_DATA_DIRS", "share::."}};
    for (const auto& environment : {none, relative}) {
        const auto folders = baseFolders(environment);
        EXPECT_EQ(folders.home, "/home/u");
        EXPECT_EQ(folders.configHome, "/home/u/.config");
        EXPECT_EQ(folders.dataHome, "/home/u/.local/share");
        EXPECT_THAT(folders.dataFolders, ElementsAre("/usr/local/share", "/usr/share"));
    }
    const auto folders = baseFolders(test::FakeEnvironment {
        {"HOME", "/"}, {"XDG_CONFIG_HOME", "/c//"}, {"XDG_DATA_DIRS", "/b/:relative:/a"}});
    EXPECT_EQ(folders.configHome, "/c");
    EXPECT_EQ(folders.dataHome, "/.local/share");
    EXPECT_THAT(folders.dataFolders, ElementsAre("/b", "/a"));
}

TEST(BaseFolders, WithoutHomeThePasswordDatabaseKnows) {
    for (const auto* const home : {"", "home"})
        EXPECT_EQ(baseFolders(test::FakeEnvironment {{"HOME", home}}).home,
            ::getpwuid(::getuid())->pw_dir);
}

TEST(XdgSearchPaths, TheTemporaryFolderIsThere) {
    const test::TemporaryFolder folder;
    const std::pair<std::string, std::string> rows[] = {
        {folder.path() + "/", folder.path()},
        {folder.write("file", ""), "/tmp"},
        {folder.path("missing"), "/tmp"},
        {".", "/tmp"},
        {"", "/tmp"},
    };
    for (const auto& [variable, expected] : rows) {
        const XdgSearchPaths paths(
            test::FakeEnvironment {{"HOME", "/h"}, {"XDG_DATA_HOME", "/d"}, {"TMPDIR", variable}});
        EXPECT_EQ(paths.temporaryFolder(), expected) << variable;
        EXPECT_EQ(paths.homeFolder(), "/h");
        EXPECT_EQ(paths.applicationSupportFolder(), "/d");
    }
}

TEST(PreferredLanguages, FollowTheVariablesOfMessages) {
    const struct {
        test::FakeEnvironment environment;
        Strings languages;
    } rows[] = {
        {{}, {}},
        {{{"LANG", "de_AT.UTF-8@euro"}}, {"de_AT", "de"}},
        {{{"LANG", "de"}, {"LC_MESSAGES", "fr_FR"}}, {"fr_FR", "fr"}},
        {{{"LANG", "de"}, {"LC_MESSAGES", "fr"}, {"LC_ALL", "sr@latin"}}, {"sr"}},
        {{{"LANG", "C.UTF-8"}}, {}},
        {{{"LANG", "de"}, {"LC_ALL", "POSIX"}, {"LANGUAGE", "fr"}}, {}},
        {{{"LC_ALL", "C"}, {"LANGUAGE", "fr"}}, {}},
        {{{"LANGUAGE", "fr"}}, {}},
        {{{"LANG", "en_GB"}, {"LANGUAGE", "de_AT:de_CH::fr.UTF-8:de"}},
            {"de_AT", "de", "de_CH", "fr"}},
        {{{"LANG", "en"}, {"LANGUAGE", "de:C:fr"}}, {"de"}},
        {{{"LANG", "en"}, {"LANGUAGE", "../../etc:/x:de"}}, {"de"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(preferredLanguages(row.environment), row.languages);
}

TEST(XdgSearchPaths, DownloadsArriveWhereTheUserSays) {
    const test::TemporaryFolder config;
    const XdgSearchPaths paths(
        test::FakeEnvironment {{"HOME", "/h"}, {"XDG_CONFIG_HOME", config.path()}});
    EXPECT_THAT(paths.downloadsFolders(), ElementsAre("/h/Downloads"));
    const std::pair<const char*, Strings> rows[] = {
        {"# XDG_DOWNLOAD_DIR=\"/no\"\nXDG_DOWNLOAD_DIR=\"$HOME/In coming/\"\n", {"/h/In coming"}},
        {"XDG_DOWNLOAD_DIR=\"/a\"\n XDG_DOWNLOAD_DIR=\"/b\\\"\\$c\"", {"/b\"$c"}},
        {"XDG_DOWNLOAD_DIR=\"relative\"\nXDG_DESKTOP_DIR=\"/d\"\n", {"/h/Downloads"}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/\"\n", {}},
    };
    for (const auto& [text, expected] : rows) {
        config.write("user-dirs.dirs", text);
        EXPECT_EQ(paths.downloadsFolders(), expected) << text;
    }
}

} // namespace
