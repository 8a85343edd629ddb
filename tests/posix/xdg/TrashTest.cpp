// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/Trash.h>

#include <tests/support/FakeEnvironment.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::MatchesRegex;
namespace fs = std::filesystem;

class TrashTest : public testing::Test {
protected:
    test::TemporaryFolder home;
    test::FakeEnvironment environment {{"HOME", home.path()}, {"XDG_DATA_HOME", home.path("data")}};
};

TEST_F(TrashTest, KeepsEveryNameAndWhereItWas) {
    const std::string odd = "a%\n\xff ü";
    for (const std::string content : {"1", "2", "3"}) {
        for (const auto& name : {std::string("Player.app"), odd, std::string(255, 'n')}) {
            home.write("from/" + name, content);
            EXPECT_FALSE(moveToTrash(home.path("from"), name, environment)) << name;
        }
        home.write("data/Trash/files/Player.2.app", "without info");
    }
    fs::create_symlink("missing", home.path("from/link"));
    fs::create_directory_symlink("from", home.path("way"));
    EXPECT_FALSE(moveToTrash(home.path("way"), "link", environment));

    const std::string cut(245, 'n');
    EXPECT_THAT(home.names("data/Trash/files"),
        testing::UnorderedElementsAre("Player.app", "Player.2.app", "Player.3.app", "Player.4.app",
            odd, odd + ".2", odd + ".3", cut, cut.substr(2) + ".2", cut.substr(2) + ".3", "link"));
    EXPECT_EQ(home.read("data/Trash/files/Player.4.app"), "3");
    EXPECT_TRUE(fs::is_symlink(home.path("data/Trash/files/link")));
    const std::string date =
        "\nDeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\n";
    for (const auto& [name, path] : {std::pair {odd + ".3", "from/a%25%0A%FF%20%C3%BC"},
             {"Player.4.app", "from/Player.app"}, {"link", "from/link"}})
        EXPECT_THAT(home.read("data/Trash/info/" + name + ".trashinfo"),
            MatchesRegex("\\[Trash Info]\nPath=" + home.path(path) + date));
    EXPECT_EQ(fs::status(home.path("data/Trash/files")).permissions(), fs::perms::owner_all);
}

TEST_F(TrashTest, WhereItFailsTheFileStays) {
    home.write("from/file", "");
    for (const auto& name : {std::string(), std::string("."), std::string(".."),
             std::string("from/file"), std::string("file\0", 5)})
        EXPECT_EQ(moveToTrash(home.path("from"), name, environment), std::errc::invalid_argument);
    EXPECT_EQ(moveToTrash(home.path("from"), "missing", environment),
        std::errc::no_such_file_or_directory);
    EXPECT_FALSE(fs::exists(home.path("data")));

    // The Trash itself cannot be moved into itself, and nothing into what is no folder.
    home.write("data/file", "");
    EXPECT_TRUE(moveToTrash(home.path(), "data", environment));
    EXPECT_THAT(home.names("data/Trash/info"), ElementsAre());
    fs::remove_all(home.path("data/Trash/files"));
    fs::create_directory_symlink(home.path(), home.path("data/Trash/files"));
    EXPECT_TRUE(moveToTrash(home.path("from"), "file", environment));
    EXPECT_THAT(home.names("from"), ElementsAre("file"));
}

TEST_F(TrashTest, OtherFileSystemsHaveTheirOwn) {
    const fs::path top = "/dev/shm";
    const auto user = std::to_string(::getuid());
    const fs::path own = top / (".Trash-" + user);
    if (fs::exists(own) || fs::exists(top / ".Trash"))
        GTEST_SKIP() << "needs " << top << " without a Trash";
    const test::TemporaryFolder other(top);

    const auto move = [&](const fs::path& trash) {
        other.write("a b", "");
        const auto error = moveToTrash(other.path(), "a b", environment);
        const auto text = test::readFile(trash / "info/a b.trashinfo");
        const auto path = "\nPath=" + other.path().substr(top.string().size() + 1) + "/a%20b\n";
        const bool isThere = fs::exists(trash / "files/a b") && text.find(path) != text.npos;
        EXPECT_TRUE(error ? fs::exists(other.path("a b")) : isThere) << trash;
        fs::remove_all(trash);
        return error;
    };
    EXPECT_FALSE(move(own));
    fs::create_directory(top / ".Trash");
    EXPECT_FALSE(move(own)); // as the shared one is not sticky
    fs::permissions(top / ".Trash", fs::perms::all | fs::perms::sticky_bit);
    EXPECT_FALSE(move(top / ".Trash" / user));
    fs::remove_all(top / ".Trash");
    fs::create_directory_symlink(other.path(), own);
    EXPECT_EQ(move(own), std::errc::not_a_directory);
    fs::remove(own);
    EXPECT_FALSE(fs::exists(home.path("data")));
}

} // namespace
