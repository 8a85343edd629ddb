// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/FileTreeCopy.h>

#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/xattr.h>

#include <chrono>
#include <future>
#include <thread>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::Matches;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

struct stat statusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

std::string attributeOf(const std::string& path, const char* name) {
    char value[100];
    const ssize_t size = ::lgetxattr(path.c_str(), name, value, sizeof value);
    return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
}

void expectSame(const std::string& path, const std::string& copy) {
    const auto one = statusOf(path);
    const auto other = statusOf(copy);
    const auto values = [](const struct stat& s) {
        return std::vector<long long> {s.st_mode, s.st_uid, s.st_gid, s.st_size, s.st_mtim.tv_sec,
            s.st_mtim.tv_nsec, static_cast<long long>(s.st_nlink)};
    };
    EXPECT_EQ(values(one), values(other)) << copy;
    for (const char* const name : {"user.note", "system.posix_acl_access"})
        EXPECT_EQ(attributeOf(path, name), attributeOf(copy, name)) << copy;
}

/// A name with bytes that are anything but a letter.
const std::string oddName = "-'\"\n%41\xff$(x)";

TEST(FileTreeCopy, KeepsWhatTheFilesAre) {
    const test::TemporaryFolder folder;
    const auto from = folder.path("From.app");
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

    const auto to = folder.path("To.app");
    const mode_t umask = ::umask(077);
    EXPECT_FALSE(copyFileTree(from + "/", to));
    ::umask(umask);
    EXPECT_EQ(statusOf(to + "/hole").st_atim.tv_nsec, times[0].tv_nsec);
    for (const auto& path : paths)
        expectSame(from + path, to + path);
    EXPECT_EQ(folder.read("To.app/bin/program"), "text");
    EXPECT_EQ(folder.read("To.app/bin/" + oddName), "odd");
    EXPECT_EQ(folder.read("To.app/hole"), folder.read("From.app/hole"));
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
}

TEST(FileTreeCopy, LeavesNothingBehindWhereItFails) {
    const test::TemporaryFolder folder;
    folder.write("from/file", "");
    folder.write("there/file", "");
    fs::create_symlink("/no/where", folder.path("link"));
    ASSERT_EQ(::mknod(folder.write("socket/a", "").append("b").c_str(), S_IFSOCK | 0600, 0), 0);
    const struct {
        std::string from, to;
        std::errc error;
    } rows[] = {
        {"from", "there", std::errc::file_exists},
        {"from", "there/file", std::errc::file_exists},
        {"from", "link", std::errc::file_exists},
        {"from", "from/inside", std::errc::invalid_argument},
        {"from", "from/..", std::errc::invalid_argument},
        {"from", std::string("a\0b", 3), std::errc::invalid_argument},
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
    EXPECT_THAT(folder.names("from"), ElementsAre("file"));
}

TEST(FileTreeCopy, LeavesNothingBehindOnAFullDisk) {
    const test::TemporaryFolder folder;
    folder.write("from/a", std::string(10'000, 'a'));
    folder.write("from/b", std::string(100'000, 'b'));
    test::ForkedTask copier([&](int output) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit {50'000, 50'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        test::say(output, copyFileTree(folder.path("from"), folder.path("to")).message());
    });
    EXPECT_EQ(copier.result(), std::make_error_code(std::errc::file_too_large).message());
    EXPECT_THAT(folder.names(), ElementsAre("from"));
}

/// A folder with many files, whose copy takes its time.
class SlowCopy : public testing::Test {
protected:
    SlowCopy() {
        for (int i = 0; i < 3'000; ++i)
            folder.write("from/" + std::to_string(i), "");
    }
    /// Where the copy takes shape; waits until it is there.
    std::string waitForWorkshop() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (std::chrono::steady_clock::now() < deadline) {
            for (const auto& name : folder.names()) {
                if (name.starts_with(".to.copy-"))
                    return folder.path(name);
            }
        }
        return "none";
    }
    auto copyInThread() const {
        return std::async(std::launch::async,
            [this] { return copyFileTree(folder.path("from"), folder.path("to")); });
    }
    test::TemporaryFolder folder;
};

TEST_F(SlowCopy, AKilledOneIsAbsentAndTheNextRemovesIt) {
    test::ForkedTask copier(
        [&](int) { static_cast<void>(copyFileTree(folder.path("from"), folder.path("to"))); });
    EXPECT_NE(waitForWorkshop(), "none");
    copier.kill();
    folder.write(".to.copy-another", "");
    EXPECT_FALSE(fs::exists(folder.path("to")));
    EXPECT_FALSE(copyFileTree(folder.path("from"), folder.path("to")));
    EXPECT_THAT(folder.names(), ElementsAre(".to.copy-another", "from", "to"));
    EXPECT_EQ(folder.names("to").size(), 3'000U);
}

TEST_F(SlowCopy, OneAtWorkIsNotDisturbedByAnother) {
    auto first = copyInThread();
    const auto workshop = waitForWorkshop();
    const auto second = copyFileTree(folder.path("from"), folder.path("to"));
    const auto firstError = first.get();
    EXPECT_TRUE(!firstError != !second) << firstError << " " << second;
    EXPECT_EQ(firstError ? firstError : second, std::errc::file_exists) << workshop;
    EXPECT_THAT(folder.names(), ElementsAre("from", "to"));
    EXPECT_EQ(folder.names("to").size(), 3'000U);
}

TEST_F(SlowCopy, ALinkMadeMeanwhileIsNeitherFollowedNorReplaced) {
    auto copy = copyInThread();
    EXPECT_NE(waitForWorkshop(), "none");
    fs::create_directory(folder.path("elsewhere"));
    fs::create_symlink("elsewhere", folder.path("to"));
    EXPECT_EQ(copy.get(), std::errc::file_exists);
    EXPECT_EQ(fs::read_symlink(folder.path("to")), "elsewhere");
    EXPECT_THAT(folder.names("elsewhere"), ElementsAre());
    EXPECT_THAT(folder.names(), ElementsAre("elsewhere", "from", "to"));
}

} // namespace
