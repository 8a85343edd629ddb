// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PosixSystemLog.h>

#include <backends/linux/posix/DatagramSocket.h>
#include <backends/linux/posix/LogFile.h>
#include <backends/linux/posix/LogLine.h>
#include <backends/linux/posix/LogOrigin.h>
#include <backends/linux/posix/Lookout.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <list>
#include <optional>
#include <utility>

namespace kw {

namespace {

constexpr std::array<const char*, 8> levelNames {
    "Emergency", "Alert", "Critical", "Error", "Warning", "Notice", "Info", "Debug"};

// RFC 5424, table 1; the numbers 12 to 15 have no name that daemons agree on.
constexpr std::pair<std::string_view, int> facilities[] {{"kern", 0}, {"user", 1}, {"mail", 2},
    {"daemon", 3}, {"auth", 4}, {"security", 4}, {"syslog", 5}, {"lpr", 6}, {"news", 7},
    {"uucp", 8}, {"cron", 9}, {"authpriv", 10}, {"ftp", 11}, {"local0", 16}, {"local1", 17},
    {"local2", 18}, {"local3", 19}, {"local4", 20}, {"local5", 21}, {"local6", 22}, {"local7", 23}};
constexpr int userFacility = 1;

std::optional<int> facilityNumber(std::string_view name) {
    const auto* const found =
        std::ranges::find(facilities, name, &std::pair<std::string_view, int>::first);
    return found == std::end(facilities) ? std::nullopt : std::optional(found->second);
}

/// Bytes that are a control character or the first of one: of ASCII, or U+0080 to U+009F.
constexpr auto mayBeControl = [] {
    std::array<bool, 256> table {};
    for (std::size_t byte = 0; byte < 0x20; ++byte)
        table[byte] = true;
    table[0x7F] = table[0xC2] = true;
    return table;
}();

/// How many bytes at the beginning of the text are a control character.
std::size_t controlLength(std::string_view text) {
    const auto byte = [text](std::size_t place) { return static_cast<unsigned char>(text[place]); };
    if (byte(0) != 0xC2)
        return 1;
    return text.size() > 1 && byte(1) >= 0x80 && byte(1) < 0xA0 ? 2 : 0;
}

std::string_view escaped(char control, std::array<char, 4>& room) {
    constexpr const char* digits = "0123456789abcdef";
    switch (control) {
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        const auto byte = static_cast<unsigned char>(control);
        room = {'\\', 'x', digits[byte >> 4], digits[byte & 0xF]};
        return {room.data(), room.size()};
    }
}

void appendEscaped(LogLine& line, std::string_view text) {
    std::size_t begin = 0;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (!mayBeControl[static_cast<unsigned char>(text[place])])
            continue;
        const std::size_t length = controlLength(text.substr(place));
        if (length == 0)
            continue;
        std::array<char, 4> room;
        line << text.substr(begin, place - begin) << escaped(text[place + length - 1], room);
        begin = place + length;
        place = begin - 1;
    }
    line << text.substr(begin);
}

std::string replaced(std::string text, bool (*isBad)(unsigned char)) {
    std::ranges::replace_if(text, [isBad](char byte) { return isBad(byte); }, '_');
    return text;
}

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }
bool endsTag(unsigned char byte) {
    return isControl(byte) || byte == ' ' || byte == ':' || byte == '[' || byte == ']';
}

class Client final : public SystemLogClient {
public:
    Client(const PosixSystemLog::Sockets& sockets, const std::string& sender,
        const std::string& facility)
        : m_sender(replaced(sender.empty() ? ::program_invocation_short_name : sender, isControl))
        , m_tag(replaced(m_sender, endsTag))
        , m_facility(facilityNumber(facility).value_or(userFacility))
        , m_journalFields("SYSLOG_IDENTIFIER=" + m_sender
              + "\nSYSLOG_FACILITY=" + std::to_string(m_facility) + "\n")
        , m_journal(sockets.journal)
        , m_syslog(sockets.syslog) {
        if (!facility.empty() && !facilityNumber(facility))
            m_journalFields += "KW_FACILITY=" + replaced(facility, isControl) + "\n";
    }

    void connect() { m_route.store(connected(), std::memory_order_relaxed); }

    void log(SystemLogLevel level, std::string_view message) override {
        timespec now;
        ::clock_gettime(CLOCK_REALTIME, &now);
        const LogOrigin& origin = logOrigin(now.tv_sec);
        const std::int64_t nanoseconds = std::int64_t {now.tv_sec} * 1'000'000'000 + now.tv_nsec;
        if (!deliver(level, message, origin, nanoseconds))
            m_unsent.fetch_add(1, std::memory_order_relaxed);
        for (LogFile& file : m_files)
            mirror(file, level, message, origin, nanoseconds);
    }

    void addLogFile(int descriptor, const std::string& path) override {
        m_files.emplace_back(descriptor, path);
    }
    void removeLogFile(int descriptor) override {
        m_files.remove_if(
            [descriptor](const LogFile& file) { return file.descriptor() == descriptor; });
    }
    std::uint64_t unsentMessageCount() const override {
        return m_unsent.load(std::memory_order_relaxed);
    }

private:
    using Outcome = DatagramSocket::Outcome;
    enum class Route { none, journal, syslog };

    Route connected() {
        if (m_journal.connect())
            return Route::journal;
        return m_syslog.connect() ? Route::syslog : Route::none;
    }

    bool deliver(
        SystemLogLevel level, std::string_view message, const LogOrigin& origin, std::int64_t now) {
        const Route route = m_route.load(std::memory_order_relaxed);
        if (route == Route::none && !m_lookout.isDue(now))
            return false;
        Outcome outcome = send(route, level, message, origin);
        if (outcome == Outcome::notConnected) {
            connect(); // whoever reads now
            outcome = send(m_route.load(std::memory_order_relaxed), level, message, origin);
        }
        return outcome == Outcome::sent;
    }

    Outcome send(
        Route route, SystemLogLevel level, std::string_view message, const LogOrigin& origin) {
        switch (route) {
        case Route::none:
            return Outcome::notConnected;
        case Route::journal:
            return sendToJournal(level, message);
        case Route::syslog:
            return sendToSyslog(level, message, origin);
        }
        return Outcome::notConnected;
    }

    Outcome sendToJournal(SystemLogLevel level, std::string_view message) {
        // The form for values that may have any byte in them: the length, little-endian.
        std::array<char, 8> length;
        for (std::size_t i = 0; i < length.size(); ++i)
            length[i] = static_cast<char>(std::uint64_t {message.size()} >> (8 * i));
        LogLine entry;
        entry << "PRIORITY=" << digit(level) << "\n"
              << m_journalFields << "MESSAGE\n"
              << std::string_view(length.data(), length.size()) << message << "\n";
        const Outcome outcome = m_journal.send(entry);
        return outcome == Outcome::tooLong ? m_journal.sendAsFile(entry) : outcome;
    }

    Outcome sendToSyslog(SystemLogLevel level, std::string_view message, const LogOrigin& origin) {
        std::array<char, 4> priority;
        const char* const end = std::to_chars(
            priority.begin(), priority.end(), m_facility * 8 + static_cast<int>(level))
                                    .ptr;
        LogLine line;
        line << "<" << std::string_view(priority.data(), end) << ">" << origin.syslogTime << " "
             << m_tag << origin.bracketedProcess << ": " << message;
        return m_syslog.send(line);
    }

    void mirror(LogFile& file, SystemLogLevel level, std::string_view message,
        const LogOrigin& origin, std::int64_t now) const {
        std::array<char, 7> fraction {'.'};
        std::int64_t microseconds = now / 1000 % 1'000'000;
        for (std::size_t i = fraction.size() - 1; i > 0; --i, microseconds /= 10)
            fraction[i] = static_cast<char>('0' + microseconds % 10);
        LogLine line;
        line << origin.time << std::string_view(fraction.data(), fraction.size()) << origin.zone
             << " " << origin.host << " " << m_sender << origin.bracketedProcess << " <"
             << levelNames[static_cast<std::size_t>(level)] << ">: ";
        appendEscaped(line, message);
        line << "\n";
        file.append(line, now);
    }

    static std::string_view digit(SystemLogLevel level) {
        return std::string_view("01234567").substr(static_cast<std::size_t>(level), 1);
    }

    const std::string m_sender;
    const std::string m_tag;
    const int m_facility;
    std::string m_journalFields;
    DatagramSocket m_journal;
    DatagramSocket m_syslog;
    std::atomic<Route> m_route = Route::none;
    Lookout m_lookout; ///< for a daemon where there was none
    std::atomic<std::uint64_t> m_unsent = 0;
    std::list<LogFile> m_files;
};

} // namespace

std::unique_ptr<SystemLogClient> PosixSystemLog::open(
    const std::string& sender, const std::string& facility, bool connectImmediately) {
    auto client = std::make_unique<Client>(m_sockets, sender, facility);
    if (connectImmediately)
        client->connect();
    return client;
}

int PosixSystemLog::openFile(const std::string& path) { return LogFile::open(path); }

void PosixSystemLog::closeFile(int descriptor) { ::close(descriptor); }

} // namespace kw
