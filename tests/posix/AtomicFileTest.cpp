// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/AtomicFile.h>

#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <thread>

namespace {

using namespace kw;
using testing::ElementsAre;
namespace fs = std::filesystem;

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

TEST(AtomicFile, KeepsTheModeOfTheFileBefore) {
    const test::TemporaryFolder folder;
    const mode_t umask = ::umask(077);
    for (const mode_t mode : {0600, 0644, 0400, 0000}) {
        const auto path = folder.write("file", "a longer old content");
        ::chmod(path.c_str(), mode);
        EXPECT_FALSE(replaceFile(path, "new", 0666));
        EXPECT_EQ(modeOf(path), mode);
        ::chmod(path.c_str(), 0600);
        EXPECT_EQ(folder.read("file"), "new");
        fs::remove(path);
    }
    EXPECT_FALSE(replaceFile(folder.path("shared"), "", 0644));
    EXPECT_EQ(modeOf(folder.path("shared")), 0644U);
    EXPECT_FALSE(replaceFile(folder.path("private"), ""));
    EXPECT_EQ(modeOf(folder.path("private")), 0600U);
    ::umask(umask);
    EXPECT_THAT(folder.names(), ElementsAre("private", "shared"));
}

TEST(AtomicFile, ReplacesWhatALinkLeadsTo) {
    const test::TemporaryFolder folder;
    folder.write("there/file", "old");
    fs::create_symlink("there/link", folder.path("link"));
    fs::create_symlink("../there/file", folder.path("there/link"));
    EXPECT_FALSE(replaceFile(folder.path("link"), "new"));
    EXPECT_EQ(folder.read("there/file"), "new");
    fs::remove(folder.path("there/file"));
    EXPECT_FALSE(replaceFile(folder.path("link"), "made"));
    EXPECT_EQ(folder.read("there/file"), "made");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_TRUE(fs::is_symlink(folder.path("there/link")));
    EXPECT_THAT(folder.names("there"), ElementsAre("file", "link"));
}

TEST(AtomicFile, LeavesNothingBehindWhereItFails) {
    const test::TemporaryFolder folder;
    fs::create_directory(folder.path("folder"));
    fs::create_symlink("loop", folder.path("loop"));
    folder.write("file", "");
    const struct {
        std::string path;
        std::errc error;
    } rows[] = {
        {folder.path("folder"), std::errc::invalid_argument},
        {folder.path("loop"), std::errc::too_many_symbolic_link_levels},
        {folder.path("missing/file"), std::errc::no_such_file_or_directory},
        {folder.path("file/file"), std::errc::not_a_directory},
        {folder.path(std::string(256, 'n')), std::errc::filename_too_long},
    };
    for (const auto& row : rows)
        EXPECT_EQ(replaceFile(row.path, "new"), row.error) << row.path;
    EXPECT_THAT(folder.names(), ElementsAre("file", "folder", "loop"));
    std::string content = "before";
    EXPECT_EQ(readFile(folder.path("folder"), content), std::errc::is_a_directory);
    EXPECT_EQ(content, "");
}

TEST(AtomicFile, UsesWhatAKilledWriterLeft) {
    const test::TemporaryFolder folder;
    folder.write(".file.replacement", "half of something longer than what is written now");
    EXPECT_FALSE(replaceFile(folder.path("file"), "new"));
    EXPECT_EQ(folder.read("file"), "new");
    EXPECT_EQ(modeOf(folder.path("file")), 0600U);
    const std::string longest(255, 'n');
    EXPECT_FALSE(replaceFile(folder.path(longest), "new"));
    EXPECT_THAT(folder.names(), ElementsAre("file", longest));
}

TEST(AtomicFile, WritersWaitForEachOther) {
    const test::TemporaryFolder folder;
    std::atomic<int> failed = 0;
    const auto write = [&](char c) {
        for (int i = 0; i < 50; ++i)
            failed += !!replaceFile(folder.path("file"), std::string(100'000, c));
    };
    std::thread first(write, 'a');
    std::thread second(write, 'b');
    first.join();
    second.join();
    EXPECT_EQ(failed, 0);
    EXPECT_THAT(folder.names(), ElementsAre("file"));
    const std::string content = folder.read("file");
    EXPECT_EQ(content, std::string(100'000, content.front()));
}

} // namespace
