// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/FileTreeCopy.h>

#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <chrono>
#include <future>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

struct stat statusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

/// What a copy has to have of the original.
std::string described(const std::string& path) {
    const auto status = statusOf(path);
    std::string text;
    for (const auto number : {static_cast<long>(status.st_mode), static_cast<long>(status.st_uid),
             static_cast<long>(status.st_gid), status.st_size, status.st_mtim.tv_sec,
             status.st_mtim.tv_nsec, static_cast<long>(status.st_nlink)})
        text += std::to_string(number) + " ";
    for (const char* const name : {"user.note", "system.posix_acl_access"}) {
        char value[100];
        const ssize_t size = ::lgetxattr(path.c_str(), name, value, sizeof value);
        text.append(value, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }
    return text;
}

TEST(FileTreeCopy, KeepsWhatTheFilesAre) {
    const test::TemporaryFolder folder;
    const auto from = folder.path("From.app"), to = folder.path("To.app");
    const std::string oddName = "-'\"\n%41\xff$(x)";
    folder.write("From.app/bin/program", "text");
    folder.write("From.app/bin/" + oddName, "odd");
    folder.write("From.app/empty", "");
    folder.write("From.app/hole", "begin");
    fs::resize_file(from + "/hole", 10'000'000);
    std::ofstream(from + "/hole", std::ios::app) << "end";
    fs::create_directory(from + "/empty folder");
    fs::create_hard_link(from + "/bin/program", from + "/hard");
    fs::create_symlink("/no/where", from + "/link");
    fs::create_hard_link(from + "/link", from + "/bin/same link");
    ASSERT_EQ(::mkfifo((from + "/fifo").c_str(), 0640), 0);
    // Others may read, "u:1:rwx": a list as the kernel keeps it.
    const std::string list(
        "\2\0\0\0\1\0\6\0\377\377\377\377\2\0\7\0\1\0\0\0\4\0\4\0\377\377\377\377"
        "\20\0\7\0\377\377\377\377\40\0\4\0\377\377\377\377",
        44);
    ::setxattr((from + "/empty").c_str(), "system.posix_acl_access", list.data(), list.size(), 0);
    for (const auto* const path : {"/bin/program", "/bin"})
        ::setxattr((from + path).c_str(), "user.note", "noted", 5, 0);
    if (::geteuid() == 0) {
        EXPECT_EQ(::lchown((from + "/link").c_str(), 12, 34), 0);
    }
    ::chmod((from + "/bin/program").c_str(), 06555);
    ::chmod((from + "/bin").c_str(), 01555);
    const timespec times[] = {{1'000'000'000, 123'456'789}, {1'100'000'000, 987'654'321}};
    const std::vector<std::string> paths {"", "/bin", "/bin/program", "/bin/" + oddName, "/empty",
        "/hole", "/empty folder", "/hard", "/link", "/bin/same link", "/fifo"};
    for (const auto& path : paths)
        ::utimensat(AT_FDCWD, (from + path).c_str(), times, AT_SYMLINK_NOFOLLOW);
    ::chmod(from.c_str(), 0555);

    const mode_t umask = ::umask(077);
    EXPECT_FALSE(copyFileTree(from + "/", to));
    ::umask(umask);
    EXPECT_EQ(statusOf(to + "/hole").st_atim.tv_nsec, times[0].tv_nsec);
    for (const auto& path : paths)
        EXPECT_EQ(described(from + path), described(to + path)) << path;
    for (const auto& path : {std::string("/bin/program"), "/bin/" + oddName, std::string("/hole")})
        EXPECT_EQ(test::readFile(to + path), test::readFile(from + path));
    EXPECT_LT(statusOf(to + "/hole").st_blocks * 512, 1'000'000);
    EXPECT_EQ(statusOf(to + "/hard").st_ino, statusOf(to + "/bin/program").st_ino);
    EXPECT_EQ(statusOf(to + "/link").st_ino, statusOf(to + "/bin/same link").st_ino);
    EXPECT_EQ(fs::read_symlink(to + "/link"), "/no/where");
    for (const auto* const path : {"/bin/program", "/link", "/fifo"}) {
        EXPECT_FALSE(copyFileTree(from + path, folder.path("single")));
        EXPECT_EQ(statusOf(folder.path("single")).st_mode, statusOf(from + path).st_mode);
        fs::remove(folder.path("single"));
    }
    EXPECT_THAT(folder.names(), ElementsAre("From.app", "To.app"));
    for (const auto& path : {from, from + "/bin", to, to + "/bin"})
        ::chmod(path.c_str(), 0755); // so that they can be removed
}

TEST(FileTreeCopy, ReachesOtherFileSystems) {
    const test::TemporaryFolder memory("/dev/shm"), disk;
    std::string content;
    for (int i = 0; content.size() < 300'000; ++i)
        content += std::to_string(i);
    EXPECT_FALSE(copyFileTree(memory.write("from", content), disk.path("to")));
    EXPECT_EQ(disk.read("to"), content);
}

TEST(FileTreeCopy, LeavesNothingBehindWhereItFails) {
    const test::TemporaryFolder folder;
    folder.write("from/file", "");
    fs::create_directory(folder.path("there"));
    fs::create_symlink("/no/where", folder.path("link"));
    ASSERT_EQ(::mknod(folder.write("socket/a", "").append("b").c_str(), S_IFSOCK | 0600, 0), 0);
    const struct {
        std::string from, to;
        std::errc error;
    } rows[] = {
        {"from", "there", std::errc::file_exists},
        {"from", "link", std::errc::file_exists},
        {"from", "from/inside", std::errc::invalid_argument},
        {"from", "from/..", std::errc::invalid_argument},
        {"from", "", std::errc::invalid_argument},
        {"missing", "to", std::errc::no_such_file_or_directory},
        {"from", "missing/to", std::errc::no_such_file_or_directory},
        {"from", std::string(256, 'n'), std::errc::filename_too_long},
        {"socket", "to", std::errc::not_supported},
    };
    const auto current = fs::current_path();
    fs::current_path(folder.path());
    for (const auto& row : rows)
        EXPECT_EQ(copyFileTree(row.from, row.to), row.error) << row.from << " " << row.to;
    EXPECT_FALSE(copyFileTree("from", std::string(255, 'n')));
    fs::current_path(current);
    EXPECT_THAT(folder.names(),
        UnorderedElementsAre("from", "there", "link", "socket", std::string(255, 'n')));
}

TEST(FileTreeCopy, LeavesNothingBehindOnAFullDisk) {
    const test::TemporaryFolder folder;
    folder.write("from/a", std::string(10'000, 'a'));
    folder.write("from/b", std::string(100'000, 'b'));
    const auto disk = folder.path("disk");
    fs::create_directory(disk);
    test::ForkedTask copier([&](int output) {
        if (::unshare(CLONE_NEWNS) != 0
            || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || ::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0)
            return test::say(output, "no disk");
        test::say(output, copyFileTree(folder.path("from"), disk + "/to").message());
        for (const std::string& name : folder.names("disk"))
            test::say(output, name);
    });
    const std::string result = copier.result();
    if (result == "no disk")
        GTEST_SKIP() << "needs a mount namespace, which takes root";
    EXPECT_EQ(result, std::make_error_code(std::errc::no_space_on_device).message());
}

/// A folder with many files, whose copy takes its time.
class SlowCopy : public testing::Test {
protected:
    SlowCopy() {
        for (int i = 0; i < 2'000; ++i)
            folder.write("from/" + std::to_string(i), std::to_string(i));
    }
    std::error_code copy() const { return copyFileTree(folder.path("from"), folder.path("to")); }
    /// Waits until a copy takes shape.
    bool isBegun() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (folder.names().size() == 1 && std::chrono::steady_clock::now() < deadline) { }
        return folder.names().begin()->starts_with(".to.kwtoolkit-copy-");
    }
    test::TemporaryFolder folder;
};

TEST_F(SlowCopy, WhatAKilledOneLeftIsRemovedByTheNext) {
    test::ForkedTask copier([&](int) { static_cast<void>(copy()); });
    EXPECT_TRUE(isBegun());
    copier.kill();
    EXPECT_FALSE(fs::exists(folder.path("to")));
    folder.write(".to.kwtoolkit-copy-another", "");
    fs::create_directory(folder.path(".to.kwtoolkit-copy-inwork"));
    const FileDescriptor locked(::open(folder.path(".to.kwtoolkit-copy-inwork").c_str(), O_RDONLY));
    ::flock(locked.get(), LOCK_EX);
    EXPECT_FALSE(copy());
    EXPECT_THAT(folder.names(),
        ElementsAre(".to.kwtoolkit-copy-another", ".to.kwtoolkit-copy-inwork", "from", "to"));
    for (int i = 0; i < 2'000; ++i)
        ASSERT_EQ(folder.read("to/" + std::to_string(i)), std::to_string(i));
}

TEST_F(SlowCopy, ALinkMadeMeanwhileIsNeitherFollowedNorReplaced) {
    auto copied = std::async(std::launch::async, [&] { return copy(); });
    EXPECT_TRUE(isBegun());
    fs::create_directory_symlink(folder.path(), folder.path("to"));
    EXPECT_EQ(copied.get(), std::errc::file_exists);
    EXPECT_TRUE(fs::is_symlink(folder.path("to")));
    EXPECT_THAT(folder.names(), ElementsAre("from", "to"));
}

} // namespace
