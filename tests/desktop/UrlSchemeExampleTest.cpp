// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The example program, started by links as a user clicks them, on a session bus.
#include <tests/support/ChildProcess.h>
#include <tests/support/PrivateBus.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace kw::test;
using testing::HasSubstr;
using testing::Not;

constexpr const char* scheme = "kwtoolkit-example://";

class UrlSchemeExampleTest : public testing::Test {
protected:
    using Words = std::vector<std::string>;

    ChildProcess run(const Words& command) { return ChildProcess(command, environment); }
    ChildProcess example(Words arguments = {}) {
        arguments.insert(arguments.begin(), KW_URL_SCHEME_EXAMPLE);
        return run(arguments);
    }
    /// Runs it to its end.
    int exitCode(ChildProcess program) {
        while (program.readLine()) { }
        return program.wait();
    }

    TemporaryFolder home;
    PrivateBus bus;
    std::map<std::string, std::optional<std::string>> environment {
        {"DBUS_SESSION_BUS_ADDRESS", bus.address()}, {"HOME", home.path()},
        {"XDG_DATA_HOME", home.path("data")}, {"XDG_CONFIG_HOME", home.path("config")},
        {"XDG_CONFIG_DIRS", home.path("none")}, {"XDG_DATA_DIRS", "/usr/share"},
        {"XDG_CURRENT_DESKTOP", std::nullopt}, {"DISPLAY", ":none"}, {"BROWSER", "false"}};
    const std::string entry = "data/applications/org.kwtoolkit.examples.UrlScheme.desktop";
};

TEST_F(UrlSchemeExampleTest, LinksStartItAndThenReachIt) {
    ASSERT_EQ(exitCode(example({"--install"})), 0);
    const std::string installed = home.read(entry);
    EXPECT_THAT(installed, HasSubstr("\nMimeType=x-scheme-handler/kwtoolkit-example;\n"));
    EXPECT_EQ(exitCode(example({"--install"})), 0);
    EXPECT_EQ(home.read(entry), installed);
    for (const Words& opener : {Words {"gio", "open"}, Words {"xdg-open"}}) {
        Words link = opener;
        link.push_back(scheme + std::string("say&!p!&a%20b&!p!&c"));
        // What the link starts writes where the opener does.
        ChildProcess started = run(link);
        EXPECT_EQ(started.readLine(), "waiting for URLs") << opener[0];
        EXPECT_EQ(started.readLine(), "say 'a b' 'c'");
        link.back() = scheme + std::string("say&!p!&again");
        ChildProcess second = run(link);
        EXPECT_EQ(second.readLine(), "handed over");
        EXPECT_EQ(started.readLine(), "say 'again'");
        EXPECT_EQ(exitCode(example({scheme + std::string("quit")})), 0);
        EXPECT_EQ(started.readLine(), std::nullopt);
    }
    EXPECT_EQ(exitCode(example({"--remove"})), 0);
    EXPECT_FALSE(std::filesystem::exists(home.path(entry)));
    EXPECT_THAT(home.read("config/mimeapps.list"), Not(HasSubstr("kwtoolkit")));
}

TEST_F(UrlSchemeExampleTest, KeepsWhatOthersHaveWritten) {
    const std::string foreign = "# mine\n[Desktop Entry]\nType=Application\nName=Mine\nX-Odd=1\n"
                                "MimeType=text/plain;\n\n[Desktop Action New]\nName=New\n";
    const std::string list =
        "[Default Applications]\nx-scheme-handler/kwtoolkit-example=other.desktop;\n";
    home.write(entry, foreign);
    home.write("config/mimeapps.list", list);
    ASSERT_EQ(exitCode(example({"--install"})), 0);
    const std::string installed = home.read(entry);
    EXPECT_THAT(
        installed, HasSubstr("# mine\n[Desktop Entry]\nType=Application\nName=Mine\nX-Odd=1\n"));
    EXPECT_THAT(installed, HasSubstr("MimeType=text/plain;x-scheme-handler/kwtoolkit-example;\n"));
    EXPECT_THAT(home.read("config/mimeapps.list"), testing::StartsWith(list));
    ASSERT_EQ(exitCode(example({"--remove"})), 0);
    EXPECT_THAT(home.read(entry), HasSubstr("MimeType=text/plain;\n"));
    EXPECT_THAT(home.read("config/mimeapps.list"), testing::StartsWith(list));
}

TEST_F(UrlSchemeExampleTest, ABurstArrivesWholeAndInOrder) {
    ChildProcess first = example();
    EXPECT_EQ(first.readLine(), "waiting for URLs");
    constexpr int count = 1'000;
    Words urls;
    for (int i = 0; i < count; ++i)
        urls.push_back(scheme + std::string("say&!p!&") + std::to_string(i));
    ChildProcess second = example(urls);
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(first.readLine(), "say '" + std::to_string(i) + "'");
    EXPECT_EQ(second.readLine(), "handed over");
}

TEST_F(UrlSchemeExampleTest, OddURLsHaveAClearOutcome) {
    ChildProcess first = example();
    EXPECT_EQ(first.readLine(), "waiting for URLs");
    const std::string longWord(100'000, 'x');
    const std::pair<std::string, std::string> rows[] = {
        {scheme + ("say&!p!&" + longWord), "say '" + longWord + "'"},
        {scheme + std::string("say&!p!&\xFF\x01"), "say '%FF\x01'"},
        {"no slashes", "error in the url management with url: no slashes "},
    };
    for (const auto& [url, line] : rows) {
        EXPECT_EQ(exitCode(example({url})), 0);
        EXPECT_EQ(first.readLine(), line);
    }
}

TEST_F(UrlSchemeExampleTest, AHangingOwnerIsNotWaitedForLong) {
    ChildProcess first = example();
    EXPECT_EQ(first.readLine(), "waiting for URLs");
    first.signal(SIGSTOP);
    ChildProcess second = example({scheme + std::string("say&!p!&late")});
    EXPECT_EQ(second.readLine(), "the one that runs does not answer");
    EXPECT_EQ(second.wait(), 1);
    first.signal(SIGCONT);
    EXPECT_EQ(first.readLine(), "say 'late'");
    // One that has crashed is nobody's owner.
    first.signal(SIGKILL);
    first.wait();
    ChildProcess third = example({scheme + std::string("say&!p!&here")});
    EXPECT_EQ(third.readLine(), "waiting for URLs");
    EXPECT_EQ(third.readLine(), "say 'here'");
}

TEST_F(UrlSchemeExampleTest, WithoutABusTheArgumentsServe) {
    environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere";
    ChildProcess alone = example({scheme + std::string("say&!p!&a"), scheme + std::string("quit")});
    EXPECT_EQ(alone.readLine(), "there is no bus, and no other URL will come");
    EXPECT_EQ(alone.readLine(), "say 'a'");
    EXPECT_EQ(alone.wait(), 0);
}

TEST_F(UrlSchemeExampleTest, AMailReachesTheMailProgramByteForByte) {
    const std::string program = home.write("mailer", "#!/bin/sh\nprintf '%s\\n' \"$1\"\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    home.write("data/applications/mailer.desktop",
        "[Desktop Entry]\nType=Application\nName=Mailer\nExec=" + program
            + " %u\nMimeType=x-scheme-handler/mailto;\n");
    home.write(
        "config/mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=mailer.desktop\n");
    ChildProcess mail = run({KW_MAIL_EXAMPLE, "someone@example.org", "50% off & more", "a\nb"});
    EXPECT_EQ(
        mail.readLine(), "mailto:someone@example.org?SUBJECT=50%25%20off%20&%20more&BODY=a%0Ab");
    EXPECT_EQ(mail.wait(), 0);
}

} // namespace
