// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace kw;

TEST(NSPathUtilities, JoinsWithOneSlash) {
    const struct {
        std::string path, component, joined;
    } rows[] = {
        {"/tmp", "a", "/tmp/a"},
        {"/tmp//", "//a/b//", "/tmp/a/b"},
        {"/", "a", "/a"},
        {"/", "", "/"},
        {"//", "/", "/"},
        {"", "a/", "a"},
        {"", "/a", "/a"},
        {"/tmp/", "", "/tmp"},
        {"tmp", "/", "tmp"},
        {"", "", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(stringByAppendingPathComponent(row.path, row.component), row.joined)
            << row.path << " and " << row.component;
}

TEST(NSPathUtilities, TakesTheLastComponent) {
    const struct {
        std::string path, last, before;
    } rows[] = {{"/a/c", "c", "/a"}, {"/a/c//", "c", "/a"}, {"/a//c", "c", "/a"}, {"/a", "a", "/"},
        {"c", "c", ""}, {"//", "/", "/"}, {"/", "/", "/"}, {"", "", ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(lastPathComponent(row.path), row.last) << row.path;
        EXPECT_EQ(stringByDeletingLastPathComponent(row.path), row.before) << row.path;
    }
}

TEST(NSPathUtilities, TakesTheExtensionAway) {
    const std::pair<std::string, std::string> rows[] = {{"/a/c.app", "/a/c"},
        {"/a/c.app//", "/a/c"}, {"c.tar.gz", "c.tar"}, {"a.", "a"}, {"a..b", "a."},
        {"/a.b/c", "/a.b/c"}, {"/a/.bashrc", "/a/.bashrc"}, {".bash.rc", ".bash"}, {"..", ".."},
        {"/", "/"}, {"", ""}};
    for (const auto& [path, without] : rows)
        EXPECT_EQ(stringByDeletingPathExtension(path), without) << path;
}

TEST(NSPathUtilities, ExpandsTheTildeOfTheUserAlone) {
    HeadlessSearchPaths paths;
    const ServiceScope scope(paths);
    const std::pair<std::string, std::string> rows[] = {{"~", "/home/user"}, {"~/", "/home/user"},
        {"~/a/~", "/home/user/a/~"}, {"~other/a", "~other/a"}, {"a/~", "a/~"}, {"", ""}};
    for (const auto& [path, expanded] : rows)
        EXPECT_EQ(stringByExpandingTildeInPath(path), expanded);
    paths.home = std::nullopt;
    EXPECT_EQ(stringByExpandingTildeInPath("~/a"), "~/a");
}

TEST(StandardSearchPaths, TheTemporaryFolderIsAbsoluteAndHasNoSlashAtItsEnd) {
    const std::string before = StandardSearchPaths().temporaryFolder();
    const std::pair<const char*, std::string> rows[] = {
        {"/usr//", "/usr"}, {"/", "/"}, {".", "/tmp"}, {"/nowhere", "/tmp"}};
    for (const auto& [variable, folder] : rows) {
        ::setenv("TMPDIR", variable, 1);
        EXPECT_EQ(StandardSearchPaths().temporaryFolder(), folder);
    }
    ::setenv("TMPDIR", before.c_str(), 1);
}

} // namespace
