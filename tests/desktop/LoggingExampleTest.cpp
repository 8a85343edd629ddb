// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The example program, run as a user runs it.
#include <tests/support/ChildProcess.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using namespace kw::test;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Optional;
using testing::StartsWith;

class LoggingExampleTest : public testing::Test {
protected:
    ChildProcess start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), KW_LOGGING_EXAMPLE);
        return ChildProcess(arguments,
            {{"HOME", home.path()}, {"XDG_DATA_HOME", home.path()},
                {"XDG_CONFIG_HOME", std::nullopt}, {"ASAN_OPTIONS", "handle_segv=0"}});
    }

    const TemporaryFolder home;
};

TEST_F(LoggingExampleTest, LogsTheTextAsItIs) {
    ChildProcess example = start({"warning", "50%", "of %s\n%%"});
    EXPECT_EQ(example.readLine(), "log file: " + home.path("02-logging/debugLog"));
    EXPECT_EQ(example.readLine(), "no crash to report");
    EXPECT_THAT(example.readLine(), Optional(HasSubstr(" of 2 messages")));
    EXPECT_EQ(example.wait(), 0);
    EXPECT_THAT(home.read("02-logging/debugLog"),
        MatchesRegex("[^\n]+ 02-logging\\[[0-9]+\\] <Warning>: 50% of %s\\\\n%%\n"));
}

TEST_F(LoggingExampleTest, TellsOfEachCrashOnce) {
    const std::string reports = "Library/Logs/CrashReporter/02-logging_";
    for (int crash = 0; crash < 2; ++crash) {
        EXPECT_EQ(start({"--crash"}).wait(), -SIGSEGV);
        ChildProcess next = start({"info", "again"});
        next.readLine();
        const auto told = next.readLine();
        const std::string beginning = "crashed the last time: " + home.path() + "/";
        ASSERT_THAT(told, Optional(StartsWith(beginning + reports)));
        EXPECT_THAT(home.read(told->substr(beginning.size())), HasSubstr("SIGSEGV"));
        ChildProcess later = start({"info", "and again"});
        later.readLine();
        EXPECT_EQ(later.readLine(), "no crash to report");
    }
}

TEST_F(LoggingExampleTest, RefusesWhatItCannotDo) {
    const struct {
        std::vector<std::string> arguments;
        const char* message;
    } rows[] = {
        {{}, "what is to be logged?"},
        {{"info"}, "what is to be logged?"},
        {{"warnig", "text"}, "no level 'warnig'"},
        {{"--crash", "now"}, "no level '--crash'"},
    };
    for (const auto& row : rows) {
        ChildProcess example = start(row.arguments);
        EXPECT_THAT(example.readLine(), Optional(HasSubstr(row.message)));
        EXPECT_THAT(example.readLine(), Optional(StartsWith("usage: 02-logging")));
        EXPECT_EQ(example.wait(), 2);
    }

    home.write("02-logging", "a file is in the way");
    ChildProcess example = start({"info", "text"});
    for (int line = 0; line < 3; ++line)
        example.readLine();
    EXPECT_THAT(example.readLine(), Optional(EndsWith("the log file cannot be opened")));
    EXPECT_EQ(example.wait(), 1);
}

} // namespace
