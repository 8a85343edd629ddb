// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWCrashLogFinder.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessDefaultsStore.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>
#include <KWToolkitLinux/CrashReportWriter.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <thread>

namespace {

using namespace kw;
using namespace kw::test;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class CrashReportWriterTest : public testing::Test {
protected:
    CrashReportWriterTest() {
        paths.home = folder.path();
        bundle.values.version = "1.2";
        bundle.values.executablePath = "/opt/Host.app/host";
    }

    /// Runs this in a child with a crash-report writer. How the child ended, as wait(2) tells.
    static int run(const std::function<void()>& crash) {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlimit none {};
            ::setrlimit(RLIMIT_CORE, &none);
            for (int number = 1; number < SIGRTMIN; ++number)
                ::signal(number, SIG_DFL); // a sanitizer's are not wanted
            if (!installCrashReportWriter())
                crash();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }

    TemporaryFolder folder;
    HeadlessSearchPaths paths;
    HeadlessMainBundle bundle;
    HeadlessDefaultsStore defaults;
    const ServiceScope<HeadlessSearchPaths> pathsScope {paths};
    const ServiceScope<HeadlessMainBundle> bundleScope {bundle};
    const ServiceScope<HeadlessDefaultsStore> defaultsScope {defaults};
};

int* volatile nowhere = reinterpret_cast<int*>(0x10);

[[gnu::noinline]] int useStack(int depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : useStack(depth + 1) + room[0];
}

TEST_F(CrashReportWriterTest, EachCrashLeavesAReportThatIsFoundOnce) {
    const struct {
        std::function<void()> crash;
        int signal;
        const char* text;
    } rows[] = {
        {[] { *nowhere = 1; }, SIGSEGV, "SIGSEGV \\(11\\)\nAddress:        0x0000000000000010\n"},
        {[] { std::abort(); }, SIGABRT, "SIGABRT \\(6\\)\nCrashed"},
        {[] { ::raise(SIGFPE); }, SIGFPE, "SIGFPE \\(8\\)\nSent by:        process"},
        {[] { useStack(0); }, SIGSEGV, "SIGSEGV"},
        {[] {
             std::thread([] {
                 ::pthread_setname_np(::pthread_self(), "worker");
                 __builtin_trap();
             }).join();
         },
            SIGILL, "SIGILL \\(4\\)\nAddress: .*\nCrashed Thread: [0-9]+ worker\n"},
        // Values that changed, and a second call.
        {[] {
             installCrashReportWriter();
             std::abort();
         },
            SIGABRT, "SIGABRT"},
    };
    for (const auto& row : rows) {
        const int status = run(row.crash);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == row.signal) << status;
        const auto path = KWCrashLogFinder::lastCrashReportPath();
        ASSERT_TRUE(path);
        EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), std::nullopt);
        EXPECT_THAT(*path,
            ContainsRegex("^" + folder.path("Library/Logs/CrashReporter/host_")
                + "[0-9]{4}-[0-9]{2}-[0-9]{2}-[0-9]{6}-[0-9]+\\.crash$"));
        const std::string report = readFile(*path);
        EXPECT_THAT(report, ContainsRegex("\nSignal:         " + std::string(row.text))) << report;
        EXPECT_THAT(report, HasSubstr("Path:           /opt/Host.app/host\n"));
        EXPECT_THAT(report, HasSubstr("Version:        1.2\n"));
        EXPECT_THAT(report,
            ContainsRegex("Backtrace:\n0 .* 0x[0-9a-f]{16} /.* \\+ 0x[0-9a-f]+\n1 .* \\+ 0x"));
        struct stat status1;
        ASSERT_EQ(::stat(path->c_str(), &status1), 0);
        EXPECT_EQ(status1.st_mode & 0777, 0600u);
        std::filesystem::remove(*path); // another may come within the second
    }
}

TEST_F(CrashReportWriterTest, OffsetsNameTheFunction) {
    run([] { useStack(0); });
    const std::string report = readFile(KWCrashLogFinder::lastCrashReportPath().value());
    // Each frame of the recursion, in the test's own program, returns to the same place.
    const auto frame = report.substr(report.find("\n10 ") + 4);
    const auto next = report.substr(report.find("\n11 ") + 4);
    EXPECT_EQ(frame.substr(0, frame.find('\n')), next.substr(0, next.find('\n'))) << report;
    EXPECT_THAT(frame, ContainsRegex("^host 0x[0-9a-f]{16} /opt/Host.app/host \\+ 0x"));
}

TEST_F(CrashReportWriterTest, NoCrashNoReport) {
    EXPECT_EQ(run([] { }), 0);
    EXPECT_EQ(run([] { ::raise(SIGTERM); }), SIGTERM);
    EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), std::nullopt);
    std::ofstream(folder.path("file"));
    paths.home = folder.path("file");
    EXPECT_EQ(installCrashReportWriter(), std::errc::not_a_directory);
    paths.home.reset(); // "~" as it stands is nobody's home
    EXPECT_TRUE(installCrashReportWriter());
    EXPECT_FALSE(std::filesystem::exists("~"));
}

TEST_F(CrashReportWriterTest, ASecondThreadThatCrashesDoesNotCutTheReport) {
    const int status = run([] {
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([] { std::abort(); });
        for (std::thread& thread : threads)
            thread.join();
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_THAT(readFile(KWCrashLogFinder::lastCrashReportPath().value()),
        ContainsRegex("Backtrace:\n0 .*\n.* 0x[0-9a-f]+\n$"));
}

TEST_F(CrashReportWriterTest, WhatWasSetBeforeTakesPlace) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::signal(SIGSEGV, [](int) { ::_exit(42); });
        installCrashReportWriter();
        ::raise(SIGSEGV);
        ::_exit(0);
    }
    int code = 0;
    ::waitpid(child, &code, 0);
    EXPECT_EQ(WEXITSTATUS(code), 42);
    EXPECT_TRUE(KWCrashLogFinder::lastCrashReportPath());
}

} // namespace
