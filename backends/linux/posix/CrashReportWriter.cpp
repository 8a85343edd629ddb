// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitLinux/CrashReportWriter.h>

#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace kw {

namespace {

struct Signal {
    int number;
    const char* name;
};
constexpr std::array<Signal, 7> fatalSignals {
    {{SIGSEGV, "SIGSEGV"}, {SIGBUS, "SIGBUS"}, {SIGILL, "SIGILL"}, {SIGFPE, "SIGFPE"},
        {SIGSYS, "SIGSYS"}, {SIGTRAP, "SIGTRAP"}, {SIGABRT, "SIGABRT"}}};

constexpr std::size_t longestBacktrace = 128;

/// What is known before a crash.
struct Prepared {
    std::string pathPrefix; ///< "/home/user/Library/Logs/CrashReporter/host_"
    std::string head; ///< the host's lines
    std::string executablePath;
};

// Replaced as a whole and never freed, since a handler may be reading it.
std::atomic<const Prepared*> prepared = nullptr;
std::array<struct sigaction, fatalSignals.size()> formerActions;
std::atomic<pid_t> crashedThread = 0;

// From here to the handler only async-signal-safe calls, and no memory but the stack.

/// A text of limited length; what does not fit is left out.
class Text {
public:
    Text& operator<<(std::string_view text) {
        m_size += text.copy(m_room.data() + m_size, m_room.size() - m_size);
        return *this;
    }
    Text& operator<<(std::uint64_t number) { return put(number, 10, 1); }
    /// With zeros in front, to be `width` digits long.
    Text& put(std::uint64_t number, int base, std::size_t width) {
        std::array<char, 20> digits;
        const char* const end = std::to_chars(digits.begin(), digits.end(), number, base).ptr;
        const std::string_view text(digits.data(), end);
        for (std::size_t i = text.size(); i < width; ++i)
            *this << "0";
        return *this << text;
    }
    Text& putAddress(std::uintptr_t address) { return (*this << "0x").put(address, 16, 16); }

    std::string_view view() const { return {m_room.data(), m_size}; }
    const char* terminated() {
        m_room[std::min(m_size, m_room.size() - 1)] = '\0';
        return m_room.data();
    }

private:
    std::array<char, 4096> m_room;
    std::size_t m_size = 0;
};

void write(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(file, text.data(), text.size());
        if (count < 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void putDate(Text& text, std::time_t now, std::string_view betweenDateAndTime,
    std::string_view betweenDigits) {
    using namespace std::chrono;
    const sys_seconds time {seconds(now)};
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const auto ofDay = static_cast<std::uint64_t>((time - day).count());
    text.put(static_cast<std::uint64_t>(static_cast<int>(date.year())), 10, 4) << "-";
    text.put(static_cast<unsigned>(date.month()), 10, 2) << "-";
    text.put(static_cast<unsigned>(date.day()), 10, 2) << betweenDateAndTime;
    text.put(ofDay / 3600, 10, 2) << betweenDigits;
    text.put(ofDay / 60 % 60, 10, 2) << betweenDigits;
    text.put(ofDay % 60, 10, 2);
}

struct Backtrace {
    std::array<std::uintptr_t, longestBacktrace> addresses;
    std::size_t count = 0;
    bool hasCrashed = false; ///< the frames of the signal handler are behind
};

_Unwind_Reason_Code addFrame(_Unwind_Context* context, void* data) {
    auto& backtrace = *static_cast<Backtrace*>(data);
    int isInterrupted = 0;
    const std::uintptr_t address = _Unwind_GetIPInfo(context, &isInterrupted);
    if (address == 0)
        return _URC_END_OF_STACK;
    if (isInterrupted != 0 && !std::exchange(backtrace.hasCrashed, true))
        backtrace.count = 0;
    // A return address is after its call, where another function or line may begin.
    backtrace.addresses[backtrace.count++] = isInterrupted != 0 ? address : address - 1;
    return backtrace.count < backtrace.addresses.size() ? _URC_NO_REASON : _URC_END_OF_STACK;
}

std::string_view lastComponent(std::string_view path) { return path.substr(path.rfind('/') + 1); }

void writeFrame(int file, std::size_t number, std::uintptr_t address, const Prepared& known) {
    Text line;
    line << number << " ";
    dl_find_object module {};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the unwinder has addresses as numbers
    if (::_dl_find_object(reinterpret_cast<void*>(address), &module) == 0) {
        std::string_view path = module.dlfo_link_map->l_name;
        if (path.empty())
            path = known.executablePath; // the program itself has no name here
        line << lastComponent(path) << " ";
        line.putAddress(address) << " " << path << " + 0x";
        line.put(address - module.dlfo_link_map->l_addr, 16, 1);
    } else {
        (line << "??? ").putAddress(address);
    }
    write(file, (line << "\n").view());
}

void writeReport(const Prepared& known, int number, const siginfo_t& details, pid_t thread) {
    timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const auto process = static_cast<std::uint64_t>(::getpid());

    Text path;
    path << known.pathPrefix;
    putDate(path, now.tv_sec, "-", "");
    path << "-" << process << ".crash";
    const int file =
        ::open(path.terminated(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file < 0)
        return;

    Text head;
    head << known.head << "Process ID:     " << process << "\nDate/Time:      ";
    putDate(head, now.tv_sec, " ", ":");
    head << " +0000\n\nSignal:         ";
    const auto* const signal = std::ranges::find(fatalSignals, number, &Signal::number);
    head << signal->name << " (" << static_cast<std::uint64_t>(number) << ")\n";
    if (details.si_code <= 0 && number != SIGABRT)
        head << "Sent by:        process " << static_cast<std::uint64_t>(details.si_pid) << "\n";
    else if (number != SIGABRT)
        (head << "Address:        ").putAddress(reinterpret_cast<std::uintptr_t>(details.si_addr))
            << "\n";
    std::array<char, 17> threadName {};
    ::prctl(PR_GET_NAME, threadName.data());
    head << "Crashed Thread: " << static_cast<std::uint64_t>(thread) << " " << threadName.data()
         << "\n\nBacktrace:\n";
    write(file, head.view());

    // Last, since a stack that was overwritten may end all.
    Backtrace backtrace;
    _Unwind_Backtrace(&addFrame, &backtrace);
    for (std::size_t i = 0; i < backtrace.count; ++i)
        writeFrame(file, i, backtrace.addresses[i], known);
    ::close(file);
}

void handle(int number, siginfo_t* details, void*) {
    const int error = errno;
    const auto thread = static_cast<pid_t>(::syscall(SYS_gettid));
    pid_t none = 0;
    if (crashedThread.compare_exchange_strong(none, thread)) {
        writeReport(*prepared.load(), number, *details, thread);
    } else if (none != thread) {
        // Another thread is writing the report, and will end the process.
        for (;;)
            ::pause();
    }
    const auto* const signal = std::ranges::find(fatalSignals, number, &Signal::number);
    ::sigaction(
        number, &formerActions[static_cast<std::size_t>(signal - fatalSignals.begin())], nullptr);
    crashedThread.store(0); // a former handler may save the process
    errno = error;
    // Comes as soon as the handler ends. A fault would come again by itself, but not abort.
    ::syscall(SYS_tgkill, ::getpid(), thread, number);
}

// Here ends what runs in a crash.

std::string line(std::string_view caption, std::string_view value) {
    constexpr std::size_t width = 16;
    std::string text(caption);
    text.resize(width, ' ');
    // One line each, whatever a host is called.
    for (const char byte : value)
        text += static_cast<unsigned char>(byte) < 0x20 ? ' ' : byte;
    return text + "\n";
}

Prepared prepare(const std::string& folder) {
    const BundleInfo bundle = NSBundle::mainBundle().info();
    utsname system {};
    ::uname(&system);
    return {
        .pathPrefix = stringByAppendingPathComponent(folder, bundle.executable + "_"),
        .head = line("Process:", bundle.executable) + line("Path:", bundle.executablePath)
            + line("Identifier:", bundle.identifier) + line("Version:", bundle.version)
            + line("OS Version:", std::string(system.sysname) + " " + system.release),
        .executablePath = bundle.executablePath,
    };
}

std::error_code useSignalStack() {
    stack_t former {};
    if (::sigaltstack(nullptr, &former) == 0 && (former.ss_flags & SS_DISABLE) == 0)
        return {}; // the host has made one
    constexpr std::size_t size = 65'536;
    static auto& room = *new std::array<char, size>;
    const stack_t stack {.ss_sp = room.data(), .ss_flags = 0, .ss_size = room.size()};
    if (::sigaltstack(&stack, nullptr) != 0)
        return {errno, std::generic_category()};
    return {};
}

} // namespace

std::error_code installCrashReportWriter() {
    const std::string folder = stringByExpandingTildeInPath("~/Library/Logs/CrashReporter/");
    if (folder.starts_with('~'))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return error;
    if (error = useSignalStack(); error)
        return error;
    if (prepared.exchange(new Prepared(prepare(folder))))
        return {};

    Backtrace backtrace;
    _Unwind_Backtrace(&addFrame, &backtrace); // whatever the unwinder sets up, it does now
    struct sigaction action {};
    action.sa_sigaction = &handle;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < fatalSignals.size(); ++i) {
        if (::sigaction(fatalSignals[i].number, &action, &formerActions[i]) != 0)
            return {errno, std::generic_category()};
    }
    return {};
}

} // namespace kw
