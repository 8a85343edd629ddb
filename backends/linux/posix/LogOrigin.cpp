// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/LogOrigin.h>

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string>

namespace kw {

namespace {

/// What has to be put right in a forked child.
class Process {
public:
    Process() {
        ::pthread_atfork([] { shared().m_localTime.lock(); }, [] { shared().m_localTime.unlock(); },
            [] {
                shared().m_localTime.unlock();
                shared().m_id.store(::getpid(), std::memory_order_relaxed);
            });
    }

    static Process& shared() {
        static auto& process = *new Process;
        return process;
    }

    pid_t id() const { return m_id.load(std::memory_order_relaxed); }

    std::tm localTime(std::time_t time) {
        // The C library's own lock, held by another thread in the moment of a fork, would never be
        // released in the child; ours is.
        const std::lock_guard lock(m_localTime);
        std::tm local {};
        ::localtime_r(&time, &local);
        return local;
    }

private:
    std::atomic<pid_t> m_id = ::getpid();
    std::mutex m_localTime;
};

// Made when the library is loaded: a child forked while another thread made it would wait forever
// for that thread.
[[maybe_unused]] const Process& madeEarly = Process::shared();

template <std::size_t capacity>
void set(LogOrigin::Text<capacity>& text, std::string_view value) {
    text.size = value.copy(text.bytes.data(), capacity);
}

/// Writes a number over the zeros or blanks that end at `end`.
template <std::size_t capacity>
void put(LogOrigin::Text<capacity>& text, std::size_t end, int value) {
    for (; value > 0 && end > 0; value /= 10)
        text.bytes[--end] = static_cast<char>('0' + value % 10);
}

// Without the C library's formatting, which takes locks and knows other languages.
void fill(LogOrigin& origin, std::time_t now, pid_t process) {
    static constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const std::tm local = Process::shared().localTime(now);
    origin.second = now;
    origin.process = process;

    set(origin.syslogTime, "Jan  0 00:00:00");
    months.copy(origin.syslogTime.bytes.data(), 3, static_cast<std::size_t>(local.tm_mon) * 3);
    put(origin.syslogTime, 6, local.tm_mday);
    put(origin.syslogTime, 9, local.tm_hour);
    put(origin.syslogTime, 12, local.tm_min);
    put(origin.syslogTime, 15, local.tm_sec);

    set(origin.time, "0000-00-00T00:00:00");
    put(origin.time, 4, local.tm_year + 1900);
    put(origin.time, 7, local.tm_mon + 1);
    put(origin.time, 10, local.tm_mday);
    put(origin.time, 13, local.tm_hour);
    put(origin.time, 16, local.tm_min);
    put(origin.time, 19, local.tm_sec);

    const int minutes = static_cast<int>(std::labs(local.tm_gmtoff) / 60);
    set(origin.zone, local.tm_gmtoff < 0 ? "-00:00" : "+00:00");
    put(origin.zone, 3, minutes / 60);
    put(origin.zone, 6, minutes % 60);

    std::string bracketed = "[";
    bracketed.append(std::to_string(process)).append("]");
    set(origin.bracketedProcess, bracketed);

    std::array<char, 65> host {};
    const bool isNamed = ::gethostname(host.data(), host.size() - 1) == 0;
    set(origin.host, isNamed ? host.data() : "localhost");
}

} // namespace

const LogOrigin& logOrigin(std::time_t now) {
    static thread_local LogOrigin origin;
    const pid_t process = Process::shared().id();
    if (origin.second != now || origin.process != process)
        fill(origin, now, process);
    return origin;
}

} // namespace kw
