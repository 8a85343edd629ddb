// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/FileURL.h>

#include <KWToolkit/platform/services/FileSystem.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

TEST(FileURL, HasAPath) {
    const struct {
        std::string url;
        std::optional<std::string> path;
    } rows[] = {
        {"file:///a/b.html", "/a/b.html"},
        {"fiLE://host/a%2Fb?c#d", "/a/b"},
        {"file:/%e2%8C%a5%FF#?", "/\xE2\x8C\xA5\xFF"},
        {"file://host", ""},
        {"file:///a%2", std::nullopt},
        {"file:///a%+1", std::nullopt},
        {"http://host/a", std::nullopt},
        {"file", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(pathOfFileURL(row.url), row.path) << row.url;

    std::string every = "/";
    for (int byte = 1; byte < 256; ++byte)
        every += static_cast<char>(byte);
    EXPECT_EQ(pathOfFileURL(fileURLOfPath(every)), every);
    EXPECT_EQ(fileURLOfPath("/a b%?#é/"), "file:///a%20b%25%3F%23%C3%A9/");
}

TEST(FileSystem, ReadsRegularFilesWhole) {
    const test::TemporaryFolder folder;
    const std::string large = std::string(200'000, 'x') + '\0' + "end";
    StandardFileSystem files;
    EXPECT_EQ(files.contentsOfFile(folder.write("large", large)), large);
    EXPECT_EQ(files.contentsOfFile(folder.write("empty", "")), "");
    for (const std::string& path :
        {folder.path("none"), folder.path(), std::string("/dev/zero"), folder.path("large") + '\0'})
        EXPECT_EQ(files.contentsOfFile(path), std::nullopt) << path;
}

} // namespace
