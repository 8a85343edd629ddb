// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The example program, started the way a desktop starts what is in the autostart folder.
#include <tests/support/ChildProcess.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace {

using namespace kw::test;

TEST(LoginItemExample, KnowsThatItWasStartedAtLogin) {
    const TemporaryFolder config;
    /// All that is printed, and the exit code.
    const auto run = [&](const std::vector<std::string>& command) {
        ChildProcess program(command, {{"XDG_CONFIG_HOME", config.path()}});
        std::string output;
        while (const auto line = program.readLine())
            output += *line + "\n";
        return output + std::to_string(program.wait());
    };
    const std::string example = KW_LOGIN_ITEM_EXAMPLE;
    const std::string item = "login item: " + example;
    EXPECT_EQ(run({example, "status"}), "does not start at login\n1");
    EXPECT_EQ(run({example, "add", "--hidden"}), "starts at login, to be hidden\n0");
    const std::string entry = config.path("autostart/org.kwtoolkit.examples.LoginItem.desktop");
    EXPECT_EQ(run({"gio", "launch", entry}),
        "started at login, to be hidden\n" + item + ", hidden\nstarts at login\n0");
    EXPECT_EQ(run({example, "add"}), "starts at login\n0");
    EXPECT_EQ(run({"gio", "launch", entry}), "started at login\n" + item + "\nstarts at login\n0");
    EXPECT_EQ(run({example, "remove"}), "does not start at login\n0");
    EXPECT_EQ(run({example, "status"}), "does not start at login\n1");
}

} // namespace
