// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The system log with a real daemon, set up as systems do and as the standard has it.
#include <backends/linux/posix/PosixSystemLog.h>
#include <tests/support/ChildProcess.h>
#include <tests/support/PumpUntil.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <optional>
#include <string>

namespace {

using namespace kw;
using namespace kw::test;
using testing::Contains;

/// An rsyslogd that writes what it gets as "sender|facility|level|process|text".
class SyslogDaemon {
public:
    /// A special parser reads what local programs write; without it messages are read as if they
    /// came through a network.
    SyslogDaemon(const TemporaryFolder& folder, bool hasSpecialParser)
        : m_configuration(folder.path("rsyslog.conf"))
        , m_processFile(folder.path("pid")) {
        const char* const parser = hasSpecialParser ? "on" : "off";
        std::ofstream(m_configuration)
            << "module(load=\"imuxsock\" SysSock.Use=\"off\")\n"
            << "input(type=\"imuxsock\" Socket=\"" << folder.path("log")
            << "\" CreatePath=\"on\" UseSpecialParser=\"" << parser
            << "\" ParseHostname=\"on\" RateLimit.Interval=\"0\")\n"
            << "template(name=\"line\" type=\"string\" string=\"%programname%|"
               "%syslogfacility-text%|%syslogseverity%|%procid%|%msg%\\n\")\n"
            << "action(type=\"omfile\" template=\"line\" file=\"" << folder.path("received")
            << "\")\n";
        start();
    }

    void start() {
        m_process.emplace(std::vector<std::string> {
            "rsyslogd", "-n", "-C", "-f", m_configuration, "-i", m_processFile});
    }
    /// Ends it as an update of the daemon does.
    void stop() {
        m_process->signal(SIGTERM);
        m_process->wait();
        m_process.reset();
    }
    /// Keeps it from reading, or lets it go on.
    void setHanging(bool isHanging) { m_process->signal(isHanging ? SIGSTOP : SIGCONT); }

private:
    std::string m_configuration;
    std::string m_processFile;
    std::optional<ChildProcess> m_process;
};

class SyslogDaemonTest : public testing::TestWithParam<bool> {
protected:
    SyslogDaemonTest() {
        // Until the daemon reads.
        const auto probe = systemLog.open("probe", "user", true);
        EXPECT_TRUE(pumpUntil([&] {
            probe->log(SystemLogLevel::info, "");
            return !received().empty();
        }));
    }
    std::vector<std::string> received() const { return readLines(folder.path("received")); }
    bool isReceived(const std::string& line) const {
        return pumpUntil([&] { return testing::Matches(Contains(line))(received()); });
    }

    /// Logs until a message is taken.
    static bool isSent(SystemLogClient& client, const std::string& text) {
        return pumpUntil([&] {
            const auto unsent = client.unsentMessageCount();
            client.log(SystemLogLevel::info, text);
            return client.unsentMessageCount() == unsent;
        });
    }

    TemporaryFolder folder;
    PosixSystemLog systemLog {{.journal = folder.path("none"), .syslog = folder.path("log")}};
    SyslogDaemon daemon {folder, GetParam()};
    std::string process = std::to_string(::getpid());
};

TEST_P(SyslogDaemonTest, ReadsSenderFacilityLevelAndText) {
    const struct {
        const char* sender;
        const char* facility;
        SystemLogLevel level;
        const char* text;
        std::string line;
    } rows[] = {
        {"Host", "user", SystemLogLevel::emergency, "plain", "Host|user|0|" + process + "| plain"},
        {"Other", "daemon", SystemLogLevel::alert, "a: b[3]",
            "Other|daemon|1|" + process + "| a: b[3]"},
        {"My App", "local3", SystemLogLevel::critical, "ünï 100%",
            "My_App|local3|2|" + process + "| ünï 100%"},
        {"Host", "mail", SystemLogLevel::error, "two\nlines",
            "Host|mail|3|" + process + "| two#012lines"},
        {"org.example.Host", "org.example.Host", SystemLogLevel::debug, "<1>Jan  1 00:00:00 x: y",
            "org.example.Host|user|7|" + process + "| <1>Jan  1 00:00:00 x: y"},
    };
    for (const auto& row : rows) {
        systemLog.open(row.sender, row.facility, true)->log(row.level, row.text);
        EXPECT_TRUE(isReceived(row.line)) << testing::PrintToString(received());
    }
}

TEST_P(SyslogDaemonTest, IsFoundAgainAfterItsRestart) {
    const auto client = systemLog.open("Host", "user", true);
    client->log(SystemLogLevel::info, "before");
    EXPECT_TRUE(isReceived("Host|user|6|" + process + "| before"));
    daemon.stop();
    client->log(SystemLogLevel::info, "between");
    EXPECT_EQ(client->unsentMessageCount(), 1u);
    daemon.start();
    EXPECT_TRUE(isSent(*client, "after"));
    EXPECT_TRUE(isReceived("Host|user|6|" + process + "| after"));
    EXPECT_THAT(received(), testing::Not(Contains(testing::HasSubstr("between"))));
}

TEST_P(SyslogDaemonTest, MayHang) {
    const auto client = systemLog.open("Host", "user", true);
    daemon.setHanging(true);
    int sent = 0;
    while (client->unsentMessageCount() < 1'000) {
        client->log(SystemLogLevel::info, std::to_string(sent));
        sent += client->unsentMessageCount() == 0 ? 1 : 0;
    }
    daemon.setHanging(false);
    EXPECT_TRUE(isSent(*client, "on again"));
    EXPECT_GT(sent, 0);
    EXPECT_TRUE(isReceived("Host|user|6|" + process + "| " + std::to_string(sent - 1)));
    EXPECT_TRUE(isReceived("Host|user|6|" + process + "| on again"));
}

INSTANTIATE_TEST_SUITE_P(Parsers, SyslogDaemonTest, testing::Bool(),
    [](const auto& row) { return row.param ? "ForLocalPrograms" : "ForTheNetwork"; });

} // namespace
