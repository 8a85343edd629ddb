// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/logging/GDASLLog.h>
#include <KWToolkit/platform/Platform.h>
#include <backends/linux/posix/FileDescriptor.h>
#include <backends/linux/posix/PosixSystemLog.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <map>
#include <optional>
#include <thread>

namespace {

using namespace kw;
using namespace kw::test;
using testing::MatchesRegex;

/// Reads what is sent to a socket, as a log daemon does.
class Daemon {
public:
    explicit Daemon(const std::string& path)
        : m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        ::unlink(path.c_str());
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(m_socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }

    /// The next datagram, or the sealed file that came with it.
    std::optional<std::string> take() {
        std::string bytes(300'000, '\0');
        iovec part {bytes.data(), bytes.size()};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
        msghdr message {.msg_iov = &part,
            .msg_iovlen = 1,
            .msg_control = control,
            .msg_controllen = sizeof control};
        const ssize_t count = ::recvmsg(m_socket.get(), &message, 0);
        if (count < 0)
            return std::nullopt;
        bytes.resize(static_cast<std::size_t>(count));
        if (const cmsghdr* const header = CMSG_FIRSTHDR(&message)) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
            const FileDescriptor file(descriptor);
            EXPECT_EQ(::write(descriptor, "x", 1), -1); // sealed
            EXPECT_EQ(bytes, "");
            bytes = readFile("/proc/self/fd/" + std::to_string(descriptor));
        }
        return bytes;
    }

private:
    FileDescriptor m_socket;
};

using Fields = std::map<std::string, std::string>;

/// An entry in the journal's native protocol.
Fields parseEntry(std::string_view entry) {
    Fields fields;
    while (!entry.empty()) {
        const auto end = entry.find('\n');
        const std::string_view line = entry.substr(0, end);
        const auto equals = line.find('=');
        std::uint64_t length = 0;
        if (equals != line.npos) {
            fields[std::string(line.substr(0, equals))] = line.substr(equals + 1);
        } else {
            entry.copy(reinterpret_cast<char*>(&length), sizeof length, end + 1);
            fields[std::string(line)] = entry.substr(end + 1 + sizeof length, length);
            length += sizeof length + 1;
        }
        entry.remove_prefix(end + 1 + length);
    }
    return fields;
}

class SystemLogTest : public testing::Test {
protected:
    std::unique_ptr<SystemLogClient> open(
        const std::string& sender, const std::string& facility, bool connectImmediately = true) {
        return systemLog.open(sender, facility, connectImmediately);
    }
    /// Attaches a file of the folder.
    int attach(SystemLogClient& client, const std::string& path) {
        const int descriptor = systemLog.openFile(path);
        EXPECT_GE(descriptor, 0);
        client.addLogFile(descriptor, path);
        return descriptor;
    }

    TemporaryFolder folder;
    const std::string journalPath = folder.path("journal");
    const std::string syslogPath = folder.path("log");
    const std::string filePath = folder.path("debugLog");
    PosixSystemLog systemLog {{journalPath, syslogPath}};
    const std::string process = std::to_string(::getpid());
};

TEST_F(SystemLogTest, SendsDatagramsAsTheCLibraryDoes) {
    Daemon daemon(syslogPath);
    const struct {
        const char* sender;
        const char* facility;
        SystemLogLevel level;
        const char* head;
        std::string tag;
    } rows[] = {
        {"Host", "user", SystemLogLevel::emergency, "<8>", "Host"},
        {"Host", "kern", SystemLogLevel::debug, "<7>", "Host"},
        {"Host", "local7", SystemLogLevel::debug, "<191>", "Host"},
        {"Host", "org.example.Host", SystemLogLevel::error, "<11>", "Host"},
        {"Host", "", SystemLogLevel::info, "<14>", "Host"},
        {"My App: [x]\n/y", "daemon", SystemLogLevel::notice, "<29>", "My_App___x__/y"},
        {"", "user", SystemLogLevel::alert, "<9>", ::program_invocation_short_name},
    };
    for (const auto& row : rows) {
        const auto client = open(row.sender, row.facility);
        client->log(row.level, "über 100 %s\n\t.");
        EXPECT_THAT(daemon.take().value_or(""),
            MatchesRegex(std::string(row.head) + "[A-Z][a-z]{2} [ 1-3][0-9] [0-9:]{8} " + row.tag
                + "\\[" + process + "\\]: über 100 %s\n\t\\."));
    }
}

TEST_F(SystemLogTest, PrefersTheJournal) {
    Daemon syslog(syslogPath);
    Daemon journal(journalPath);
    const std::string texts[] = {
        "plain", "two\nlines=\n", std::string("\0 \xFF", 3), "", std::string(1'000'000, 'x')};
    const auto client = open("My App\n", "org.example.Host", /*connectImmediately*/ false);
    for (const std::string& text : texts) {
        client->log(SystemLogLevel::critical, text);
        EXPECT_EQ(parseEntry(journal.take().value_or("")),
            (Fields {{"PRIORITY", "2"}, {"SYSLOG_IDENTIFIER", "My App_"}, {"SYSLOG_FACILITY", "1"},
                {"KW_FACILITY", "org.example.Host"}, {"MESSAGE", text}}));
    }
    open("Host", "local1")->log(SystemLogLevel::debug, "x");
    EXPECT_EQ(parseEntry(journal.take().value_or("")),
        (Fields {{"PRIORITY", "7"}, {"SYSLOG_IDENTIFIER", "Host"}, {"SYSLOG_FACILITY", "17"},
            {"MESSAGE", "x"}}));
    EXPECT_EQ(syslog.take(), std::nullopt);
    EXPECT_EQ(client->unsentMessageCount(), 0u);
}

TEST_F(SystemLogTest, FindsADaemonThatComesBack) {
    const auto client = open("Host", "user");
    // How many messages get lost until the daemon gets one.
    const auto lostUntilReceived = [&](Daemon& daemon) {
        int lost = 0;
        for (; lost < 100'000; ++lost) {
            client->log(SystemLogLevel::info, "x");
            if (daemon.take())
                return lost;
        }
        return lost;
    };
    client->log(SystemLogLevel::info, "nobody is there");
    EXPECT_EQ(client->unsentMessageCount(), 1u);
    std::optional<Daemon> daemon(syslogPath);
    EXPECT_LT(lostUntilReceived(*daemon), 100'000);
    EXPECT_EQ(lostUntilReceived(*daemon), 0);

    daemon.emplace(syslogPath); // the new one is there before the old one goes
    EXPECT_EQ(lostUntilReceived(*daemon), 0);
    daemon.reset();
    const auto before = client->unsentMessageCount();
    client->log(SystemLogLevel::info, "it has gone");
    EXPECT_EQ(client->unsentMessageCount(), before + 1);
    Daemon journal(journalPath);
    EXPECT_LT(lostUntilReceived(journal), 100'000);
    EXPECT_EQ(lostUntilReceived(journal), 0);
}

TEST_F(SystemLogTest, NeverWaitsForAReader) {
    Daemon daemon(syslogPath);
    const auto client = open("Host", "user");
    constexpr std::uint64_t count = 10'000;
    for (std::uint64_t i = 0; i < count; ++i)
        client->log(SystemLogLevel::info, std::to_string(i));
    std::uint64_t received = 0;
    while (daemon.take())
        ++received;
    EXPECT_GT(received, 0u);
    EXPECT_EQ(client->unsentMessageCount(), count - received);

    const std::string longText(1'000'000, 'x');
    client->log(SystemLogLevel::info, longText);
    EXPECT_EQ(client->unsentMessageCount(), count - received + 1);
    client->log(SystemLogLevel::info, "in time");
    EXPECT_TRUE(daemon.take());
}

TEST_F(SystemLogTest, ASocketOfAnotherKindCostsNoDescriptor) {
    const FileDescriptor stream(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    syslogPath.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(stream.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const auto client = open("Host", "user");
    const int next = ::dup(STDERR_FILENO);
    ::close(next);
    for (int i = 0; i < 20'000; ++i) // looks for a daemon many times
        client->log(SystemLogLevel::info, "x");
    EXPECT_EQ(FileDescriptor(::dup(STDERR_FILENO)).get(), next);
}

TEST_F(SystemLogTest, OutlivesTheClosingOfAllDescriptors) {
    Daemon daemon(syslogPath);
    const int last = ::dup(STDERR_FILENO);
    ::close(last);
    std::vector<FileDescriptor> others;
    {
        const auto client = open("Host", "user");
        attach(*client, filePath);
        // As a program does that becomes a daemon, and then opens files of its own.
        for (int descriptor = last; descriptor < last + 5; ++descriptor) {
            ::close(descriptor);
            others.emplace_back(::open(folder.path("other").c_str(), O_RDWR | O_CREAT, 0600));
            ASSERT_EQ(others.back().get(), descriptor);
        }
        client->log(SystemLogLevel::info, "x");
        EXPECT_TRUE(daemon.take());
    }
    EXPECT_THAT(readFile(filePath), testing::EndsWith("<Info>: x\n"));
    EXPECT_EQ(readFile(folder.path("other")), "");
    for (const FileDescriptor& other : others)
        EXPECT_NE(::fcntl(other.get(), F_GETFD), -1);
}

TEST_F(SystemLogTest, MirrorsALineForEachMessage) {
    const std::pair<std::string, std::string> rows[] = {
        {"plain", "plain"},
        {"", ""},
        {"a\nb\tc\rd\x1b[31me\x7f", "a\\nb\\tc\\rd\\x1b[31me\\x7f"},
        {std::string("\0x", 2), "\\x00x"},
        {"\xC2\x9b\xC2\xA0ü\xC2", "\\x9b\xC2\xA0ü\xC2"},
        {"\xFF\x80 \\n", "\xFF\x80 \\n"},
        {std::string(5'000, '\n') + "end",
            [] {
                std::string text;
                for (int i = 0; i < 5'000; ++i)
                    text += "\\n";
                return text + "end";
            }()},
    };
    const auto client = open("My App\x1b", "user");
    const FileDescriptor file(attach(*client, filePath));
    for (const auto& [message, text] : rows)
        client->log(SystemLogLevel::warning, message);
    client->removeLogFile(file.get());
    client->log(SystemLogLevel::warning, "no longer");

    std::array<char, 65> host {};
    ::gethostname(host.data(), host.size() - 1);
    const auto lines = readLines(filePath);
    ASSERT_EQ(lines.size(), std::size(rows));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        constexpr std::size_t timeLength = 32;
        EXPECT_THAT(lines[i].substr(0, timeLength),
            MatchesRegex(
                "[0-9]{4}-[01][0-9]-[0-3][0-9]T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{6}[+-][0-"
                "9]{2}:[0-9]{2}"));
        EXPECT_EQ(lines[i].substr(timeLength),
            " " + std::string(host.data()) + " My App_[" + process
                + "] <Warning>: " + rows[i].second);
    }
}

TEST_F(SystemLogTest, FollowsARotatedFile) {
    const auto client = open("Host", "user");
    const FileDescriptor file(attach(*client, filePath));
    const auto logUntil = [&](const auto& condition) {
        for (int i = 0; i < 100'000 && !condition(); ++i)
            client->log(SystemLogLevel::info, "next");
        return condition();
    };
    const auto isThere = [this] { return std::filesystem::exists(filePath); };
    client->log(SystemLogLevel::info, "first");
    std::filesystem::rename(filePath, filePath + ".1");
    EXPECT_TRUE(logUntil(isThere));
    EXPECT_THAT(readLines(filePath + ".1")[0], testing::EndsWith("first"));
    // The caller's descriptor goes along, so that the old file can be given back.
    EXPECT_EQ(
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file.get())), filePath);
    std::filesystem::remove(filePath);
    EXPECT_TRUE(logUntil(isThere));
    // A new file that is there already is not cut.
    std::filesystem::rename(filePath, filePath + ".2");
    std::ofstream(filePath) << "kept\n";
    EXPECT_TRUE(logUntil([this] { return readLines(filePath).size() > 1; }));
    EXPECT_EQ(readLines(filePath)[0], "kept");
    // Where there can be no new file, the old one goes on.
    std::filesystem::remove(filePath);
    std::filesystem::create_directory(filePath);
    client->log(SystemLogLevel::info, "x");
    EXPECT_NE(::fcntl(file.get(), F_GETFD), -1);
}

TEST_F(SystemLogTest, ManyWritersLoseAndTearNoLine) {
    constexpr int threadCount = 8;
    constexpr int processCount = 4;
    constexpr int messageCount = 10'000;
    const auto client = open("Host", "user");
    const FileDescriptor file(attach(*client, filePath));
    const auto write = [&client](int writer) {
        const std::string text = " writer " + std::to_string(writer) + " ";
        for (int i = 0; i < messageCount; ++i)
            client->log(SystemLogLevel::info, text + std::to_string(i));
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(write, i);
    // While the threads are at it: the children begin in the middle of their messages.
    std::vector<pid_t> children;
    for (int i = 0; i < processCount; ++i) {
        children.push_back(::fork());
        if (children.back() == 0) {
            write(threadCount + i);
            ::_exit(0);
        }
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    std::array<int, threadCount + processCount> next {};
    for (const std::string& line : readLines(filePath)) {
        const auto place = line.find(" writer ");
        ASSERT_NE(place, line.npos) << line;
        int writer = -1;
        int number = -1;
        ASSERT_EQ(std::sscanf(line.c_str() + place, " writer %d %d", &writer, &number), 2) << line;
        ASSERT_EQ(number, next.at(static_cast<std::size_t>(writer))++) << line;
        const pid_t sender = writer < threadCount
            ? ::getpid()
            : children[static_cast<std::size_t>(writer - threadCount)];
        ASSERT_THAT(line.substr(32, place - 32),
            testing::EndsWith(" Host[" + std::to_string(sender) + "] <Info>: "));
    }
    EXPECT_THAT(next, testing::Each(messageCount));
}

TEST_F(SystemLogTest, ALineThatAFullDiskCutIsEndedByTheNext) {
    const auto client = open("Host", "user");
    const FileDescriptor file(attach(*client, filePath));
    client->log(SystemLogLevel::info, "one");
    rlimit former {};
    ::getrlimit(RLIMIT_FSIZE, &former);
    const rlimit small {std::filesystem::file_size(filePath) + 10, former.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    client->log(SystemLogLevel::info, "two");
    ::setrlimit(RLIMIT_FSIZE, &former);
    client->log(SystemLogLevel::info, "three");
    const auto lines = readLines(filePath);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1].size(), 10u);
    EXPECT_THAT(lines[2], testing::EndsWith("<Info>: three"));
}

TEST_F(SystemLogTest, AChannelsFirstFileTakesDescriptorZero) {
    const ServiceScope scope(systemLog);
    // In a child, since it ends standard input. Its exit code is the check that failed.
    const auto checks = [this] {
        ::umask(0);
        ::close(STDIN_FILENO);
        if (::open("/dev/null", O_RDONLY) != 0)
            return 1;
        GDASLLog log("Host", "user", true);
        if (log.setLogFile(filePath) != 0 || log.fd() != 0)
            return 2;
        log.notice("100%%");
        if ((::fcntl(0, F_GETFL) & (O_ACCMODE | O_APPEND)) != (O_WRONLY | O_APPEND))
            return 3;
        if (::fcntl(0, F_GETFD) != FD_CLOEXEC)
            return 4;
        // Another channel's first file closes this one's descriptor, but does not get its lines.
        GDASLLog other("Other", "user", true);
        if (other.setLogFile(folder.path("other")) != 0 || other.fd() != 0)
            return 5;
        log.notice("200%%");
        if (log.setLogFile(folder.path("missing/x")) != -1 || ::fcntl(0, F_GETFD) != -1)
            return 6;
        if (::open("/dev/null", O_RDONLY) != 0 || log.setLogFile(filePath) != 0 || log.fd() == 0)
            return 7;
        if (::fcntl(0, F_GETFD) == -1)
            return 8;
        log.close();
        return ::fcntl(log.fd(), F_GETFD) == -1 ? 9 : 0;
    };
    EXPECT_EXIT(::_exit(checks()), testing::ExitedWithCode(0), "");
    struct stat status;
    ASSERT_EQ(::stat(filePath.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0646u);
    EXPECT_THAT(readFile(filePath), testing::EndsWith("<Notice>: 200%\n"));
    EXPECT_EQ(readFile(folder.path("other")), "");
}

} // namespace
