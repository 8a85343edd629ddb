// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The example program moves itself, on a desktop with a window manager, for a user who agrees.
#include <tests/support/ChildProcess.h>
#include <tests/support/KeyInjector.h>
#include <tests/support/PrivateDisplay.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <chrono>
#include <filesystem>
#include <functional>

namespace {

using namespace kw::test;
namespace fs = std::filesystem;

using Words = std::vector<std::string>;

constexpr uid_t nobody = 65534;

std::vector<pid_t> processesOf(const std::string& program) {
    std::vector<pid_t> processes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        if (fs::read_symlink(entry.path() / "exe", error) == program)
            processes.push_back(std::stoi(entry.path().filename()));
    }
    return processes;
}

bool soon(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
    }
    return true;
}

/// Makes the libraries readable and the home the user's own, where the test has the rights of one
/// who may do anything. The words that start a program as that user.
Words asOrdinaryUser(const TemporaryFolder& home) {
    if (::geteuid() != 0)
        return {};
    for (const fs::path library : {KW_CORE_LIBRARY, KW_QT_LIBRARY})
        fs::copy_file(library, fs::path(home.path()) / library.filename());
    EXPECT_EQ(::chown(home.path().c_str(), nobody, nobody), 0);
    for (const auto& entry : fs::recursive_directory_iterator(home.path()))
        EXPECT_EQ(::chown(entry.path().c_str(), nobody, nobody), 0);
    const std::string user = std::to_string(nobody);
    return {"setpriv", "--reuid", user, "--regid", user, "--clear-groups"};
}

TEST(MoveExample, EndsInTheUsersApplicationsFolder) {
    const TemporaryFolder home;
    const PrivateDisplay display;
    const std::map<std::string, std::optional<std::string>> environment {
        {"DISPLAY", display.name()}, {"HOME", home.path()},
        {"XDG_RUNTIME_DIR", home.path("runtime")}, {"LD_LIBRARY_PATH", home.path()},
        {"QT_QPA_PLATFORM", "xcb"}, {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        {"XDG_CACHE_HOME", std::nullopt}, {"XDG_CONFIG_HOME", std::nullopt},
        {"XDG_DATA_HOME", std::nullopt}};
    const ChildProcess windowManager({"openbox", "--sm-disable"}, environment);
    const auto activeWindow = [&] {
        ChildProcess xprop({"xprop", "-root", "_NET_ACTIVE_WINDOW"}, environment);
        return xprop.readLine().value_or("");
    };
    fs::create_directory(home.path("Downloads"));
    fs::create_directory(home.path("Applications"));
    fs::create_directory(home.path("runtime"));
    fs::permissions(home.path("runtime"), fs::perms::owner_all);
    ASSERT_EQ(ChildProcess({KW_MOVE_EXAMPLE, "--bundle", home.path("Downloads")}).wait(), 0);
    Words command = asOrdinaryUser(home);
    const std::string before = home.path("Downloads/Mover.app/Mover");
    const std::string after = home.path("Applications/Mover.app/Mover");
    command.push_back(before);

    ChildProcess mover(command, environment);
    ASSERT_TRUE(soon([&] {
        const std::string window = activeWindow();
        return window.find("window id") != window.npos && !window.ends_with(" 0x0");
    }));
    KeyInjector(display.name()).type({XKB_KEY_Return});
    // Its copy waits until nothing is left of it, and then writes where it did.
    EXPECT_EQ(mover.wait(), 0);
    for (const std::string& line :
        {std::string("Can't write to /Applications, checking ~/Applications"),
            "User applicationsDirectory: " + home.path("Applications"),
            std::string("Moving myself to the Applications folder"),
            "running from " + home.path("Applications/Mover.app")})
        EXPECT_EQ(mover.readLine(), line);
    EXPECT_TRUE(processesOf(before).empty());
    const auto processes = processesOf(after);
    ASSERT_EQ(processes.size(), 1U);
    ::kill(processes[0], SIGTERM);

    EXPECT_TRUE(home.names("Downloads").empty());
    EXPECT_EQ(home.names("Applications"), std::set<std::string> {"Mover.app"});
    EXPECT_TRUE(fs::exists(home.path(".local/share/Trash/files/Mover.app/Mover")));
    EXPECT_THAT(home.read(".local/share/Trash/info/Mover.app.trashinfo"),
        testing::MatchesRegex("\\[Trash Info\\]\nPath=" + home.path("Downloads/Mover.app")
            + "\nDeletionDate=[-0-9]+T[:0-9]+\n"));
}

} // namespace
