// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Log messages beside the system calls they need, the C library's syslog and spdlog. Everything
// runs in a private /dev, whose /dev/log a thread reads as fast as it can; no real log is written.
#include <KWToolkit/logging/GDASLLog.h>
#include <KWToolkit/platform/Platform.h>
#include <backends/linux/posix/FileDescriptor.h>
#include <backends/linux/posix/PosixSystemLog.h>
#include <bench/RatioReporter.h>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sched.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/syslog_sink.h>
#include <spdlog/spdlog.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace kw;

// As long as many a line of a real log.
constexpr std::string_view text =
    "connection to 192.0.2.17:443 closed after 1843 ms, 20417 bytes in, 961 bytes out";

sockaddr_un addressOf(std::string_view path) {
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

/// Takes whatever is sent to /dev/log and throws it away, without ever sleeping.
class Daemon {
public:
    Daemon()
        : m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_un address = addressOf("/dev/log");
        m_isBound =
            ::bind(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address)
            == 0;
        m_thread = std::thread([this] {
            std::array<char, 1024> bytes;
            while (!m_isDone.load(std::memory_order_relaxed)) {
                if (::recv(m_socket.get(), bytes.data(), bytes.size(), MSG_DONTWAIT) < 0)
                    std::this_thread::yield();
            }
        });
    }
    ~Daemon() {
        m_isDone = true;
        m_thread.join();
    }
    bool isBound() const { return m_isBound; }

private:
    FileDescriptor m_socket;
    bool m_isBound = false;
    std::atomic<bool> m_isDone = false;
    std::thread m_thread;
};

/// What is shared by the threads of a benchmark.
struct Peers {
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("logging_bench." + std::to_string(::getpid()));
    FileDescriptor socket {::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    FileDescriptor file;
    std::shared_ptr<spdlog::logger> spdlogSyslog = std::make_shared<spdlog::logger>("bench",
        std::make_shared<spdlog::sinks::syslog_sink_mt>("bench", LOG_PID, LOG_USER, false));
    std::shared_ptr<spdlog::logger> spdlogFile;
    std::shared_ptr<spdlog::logger> spdlogBoth;
    PosixSystemLog systemLog;
    std::unique_ptr<GDASLLog> log;
    std::unique_ptr<GDASLLog> mirroredLog;

    Peers() {
        std::filesystem::create_directory(folder);
        file =
            FileDescriptor(::open((folder / "bare").c_str(), O_WRONLY | O_APPEND | O_CREAT, 0600));
        const auto fileSink =
            std::make_shared<spdlog::sinks::basic_file_sink_mt>((folder / "spdlog").string());
        spdlogFile = std::make_shared<spdlog::logger>("bench", fileSink);
        spdlogBoth = std::make_shared<spdlog::logger>(
            "bench", spdlog::sinks_init_list {spdlogSyslog->sinks()[0], fileSink});
        spdlogFile->flush_on(spdlog::level::info);
        spdlogBoth->flush_on(spdlog::level::info);
        ::openlog("bench", LOG_PID, LOG_USER);

        const sockaddr_un address = addressOf("/dev/log");
        (void)::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
        const ServiceScope scope(systemLog);
        log = std::make_unique<GDASLLog>("bench", "user", true);
        mirroredLog = std::make_unique<GDASLLog>("bench", "user", true);
        mirroredLog->setLogFile((folder / "mirror").string());
    }
    ~Peers() {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }
};

Peers* peers = nullptr;

/// The very bytes that a channel sends and writes.
const std::string sentBytes =
    "<14>Nov 23 02:10:33 bench[" + std::to_string(::getpid()) + "]: " + std::string(text);
const std::string writtenBytes = "2026-11-23T02:10:33.123456+01:00 localhost bench["
    + std::to_string(::getpid()) + "] <Info>: " + std::string(text) + "\n";

void reportLost(benchmark::State& state, std::uint64_t lost) {
    state.counters["lost"] =
        benchmark::Counter(static_cast<double>(lost), benchmark::Counter::kAvgIterations);
    state.SetItemsProcessed(state.iterations());
}

bool sendBare() {
    return ::send(peers->socket.get(), sentBytes.data(), sentBytes.size(), MSG_DONTWAIT) >= 0;
}
void writeBare() {
    benchmark::DoNotOptimize(::write(peers->file.get(), writtenBytes.data(), writtenBytes.size()));
}

void bareSend(benchmark::State& state) {
    std::uint64_t lost = 0;
    for (auto _ : state)
        lost += sendBare() ? 0 : 1;
    reportLost(state, lost);
}

void bareSendAndWrite(benchmark::State& state) {
    std::uint64_t lost = 0;
    for (auto _ : state) {
        lost += sendBare() ? 0 : 1;
        writeBare();
    }
    reportLost(state, lost);
}

void logTo(benchmark::State& state, GDASLLog& log) {
    const std::uint64_t before = log.unsentMessageCount();
    for (auto _ : state)
        log.info(text);
    // All threads count into one.
    reportLost(state, state.thread_index() == 0 ? log.unsentMessageCount() - before : 0);
}

void channelToSocket(benchmark::State& state) { logTo(state, *peers->log); }
void channelToSocketAndFile(benchmark::State& state) { logTo(state, *peers->mirroredLog); }

void channelDisabled(benchmark::State& state) {
    GDASLLogManager::sharedInstance().setEnabled(false);
    for (auto _ : state) {
        std::string_view message = text;
        benchmark::DoNotOptimize(message);
        peers->log->info(message);
    }
    GDASLLogManager::sharedInstance().setEnabled(true);
}

void libcSyslog(benchmark::State& state) {
    for (auto _ : state)
        ::syslog(LOG_INFO, "%s", text.data());
    state.SetItemsProcessed(state.iterations());
}

void spdlogTo(benchmark::State& state, spdlog::logger& logger) {
    for (auto _ : state)
        logger.info(text);
    state.SetItemsProcessed(state.iterations());
}

void spdlogToSyslog(benchmark::State& state) { spdlogTo(state, *peers->spdlogSyslog); }
void spdlogToFile(benchmark::State& state) { spdlogTo(state, *peers->spdlogFile); }
void spdlogToSyslogAndFile(benchmark::State& state) { spdlogTo(state, *peers->spdlogBoth); }

void bareWrite(benchmark::State& state) {
    for (auto _ : state)
        writeBare();
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(channelDisabled);
#define KW_LOG_BENCHMARK(name) BENCHMARK(name)->Threads(1)->Threads(8)->UseRealTime()
KW_LOG_BENCHMARK(bareSend);
KW_LOG_BENCHMARK(channelToSocket);
KW_LOG_BENCHMARK(libcSyslog);
KW_LOG_BENCHMARK(spdlogToSyslog);
KW_LOG_BENCHMARK(bareWrite);
KW_LOG_BENCHMARK(spdlogToFile);
KW_LOG_BENCHMARK(bareSendAndWrite);
KW_LOG_BENCHMARK(channelToSocketAndFile);
KW_LOG_BENCHMARK(spdlogToSyslogAndFile);

/// Hides the machine's /dev from this process.
bool enterPrivateDevices() {
    const bool isPrivate =
        ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    return isPrivate && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && ::mount("tmpfs", "/dev", "tmpfs", 0, nullptr) == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (!bench::initializeInTurns(argc, argv, 7, "0.2"))
        return 2;

    if (!enterPrivateDevices()) {
        std::fputs("logging_bench: needs a mount namespace of its own\n", stderr);
        return 1;
    }
    const Daemon daemon;
    if (!daemon.isBound()) {
        std::fputs("logging_bench: /dev/log is taken\n", stderr);
        return 1;
    }
    Peers all;
    peers = &all;
    bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    for (const std::string threads : {"/real_time/threads:1", "/real_time/threads:8"}) {
        for (const char* name : {"channelToSocket", "libcSyslog", "spdlogToSyslog"})
            reporter.printRatio(name + threads, "bareSend" + threads);
        for (const char* name : {"channelToSocketAndFile", "spdlogToSyslogAndFile"})
            reporter.printRatio(name + threads, "bareSendAndWrite" + threads);
        reporter.printRatio("spdlogToFile" + threads, "bareWrite" + threads);
    }
}
