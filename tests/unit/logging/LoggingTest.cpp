// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/logging/GDASLLog.h>
#include <KWToolkit/logging/GDASLLogManager.h>
#include <KWToolkit/logging/KWFileLogger.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessFileSystem.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>
#include <KWToolkit/platform/headless/HeadlessSystemLog.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <thread>
#include <vector>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(GDASLLogManager, IsAllocatedOnce) {
    GDASLLogManager& registry = GDASLLogManager::sharedInstance();
    EXPECT_TRUE(registry.enabled());
    EXPECT_EQ(GDASLLogManager::allocWithZone(), nullptr);
    EXPECT_EQ(&GDASLLogManager::sharedInstance(), &registry);
    EXPECT_EQ(&registry.copyWithZone(), &registry);
    EXPECT_EQ(GDASLLogManager::retainCount(), 4294967295u);
}

class LoggingTest : public testing::Test {
protected:
    ~LoggingTest() override { registry.init(); }

    HeadlessSystemLog systemLog;
    const ServiceScope<HeadlessSystemLog> scope {systemLog};
    GDASLLogManager& registry = GDASLLogManager::sharedInstance().init();
};

TEST_F(LoggingTest, LevelsAndStandardOutput) {
    GDASLLog log("Host", "daemon", /*connectImmediately*/ true);
    EXPECT_THAT(systemLog.takeEvents(), ElementsAre("open Host daemon now"));
    const struct {
        void (GDASLLog::*log)(std::string_view);
        const char* sent;
        const char* printed;
    } rows[] = {
        {&GDASLLog::emergency, "Host 0 disk full", ""},
        {&GDASLLog::alert, "Host 1 disk full", "disk full"},
        {&GDASLLog::critical, "Host 2 disk full", "disk full"},
        {&GDASLLog::error, "Host 3 disk full", ""},
        {&GDASLLog::warning, "Host 4 disk full", ""},
        {&GDASLLog::notice, "Host 5 disk full", ""},
        {&GDASLLog::info, "Host 6 disk full", ""},
        {&GDASLLog::debug, "Host 7 disk full", ""},
    };
    for (const bool isMirrored : {false, true}) {
        for (const bool isEnabled : {true, false}) {
            for (const auto& row : rows) {
                log.setLogToStdOut(isMirrored);
                registry.setEnabled(isEnabled);
                testing::internal::CaptureStdout();
                (log.*row.log)("disk full");
                const bool isPrinted = isMirrored && isEnabled;
                EXPECT_EQ(testing::internal::GetCapturedStdout(), isPrinted ? row.printed : "");
                EXPECT_EQ(systemLog.takeEvents(),
                    isEnabled ? std::vector<std::string> {row.sent} : std::vector<std::string>());
            }
        }
    }
}

TEST_F(LoggingTest, MessagesAreFormatsWithoutArguments) {
    GDASLLog log("Host", "user", /*connectImmediately*/ false);
    EXPECT_THAT(systemLog.takeEvents(), ElementsAre("open Host user later"));
    const std::pair<const char*, const char*> rows[] {
        {"", ""},
        {"100%%", "100%"},
        {"%%%%", "%%"},
        {"%", "%"},
        {"%%%", "%%"},
        {"%s %n %99999d %1$s %", "%s %n %99999d %1$s %"},
        {"%%s%%n a%%b", "%s%n a%b"},
        {"%d%%", "%d%"},
    };
    EXPECT_EQ(messageFromText("a%b%%"), "a%%b%%%%");
    log.setLogToStdOut(true);
    for (const auto& [message, text] : rows) {
        testing::internal::CaptureStdout();
        log.alert(message);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), text);
        EXPECT_THAT(systemLog.takeEvents(), ElementsAre("Host 1 " + std::string(text)));
    }
}

TEST_F(LoggingTest, FilesReplaceDescriptors) {
    systemLog.files = {{"/a", 0}, {"/b", 7}};
    {
        GDASLLog log("Host", "user", true);
        EXPECT_EQ(log.fd(), 0);
        systemLog.takeEvents();
        // The first file closes descriptor 0.
        EXPECT_EQ(log.setLogFile("/a"), 0);
        EXPECT_THAT(systemLog.takeEvents(),
            ElementsAre("remove 0", "close file 0", "open file /a", "add 0"));
        EXPECT_EQ(log.setLogFile("/missing/x"), -1);
        EXPECT_THAT(systemLog.takeEvents(),
            ElementsAre("remove 0", "close file 0", "open file /missing/x"));
        EXPECT_EQ(log.fd(), -1);
        EXPECT_EQ(log.setLogFile("/b"), 0);
        EXPECT_THAT(systemLog.takeEvents(), ElementsAre("open file /b", "add 7"));
        log.close();
        // The descriptor stays open.
        EXPECT_THAT(systemLog.takeEvents(), ElementsAre("remove 7", "close Host"));
        log.error("too late");
        log.close();
    }
    EXPECT_THAT(systemLog.takeEvents(), IsEmpty());
    GDASLLog("Host", "user", true).info("x");
    EXPECT_THAT(systemLog.takeEvents(),
        ElementsAre("open Host user now", "Host 6 x", "remove 0", "close Host"));
}

TEST_F(LoggingTest, TheRegistrySharesChannelsByName) {
    EXPECT_EQ(registry.getLogForKey("net"), nullptr);
    registry.setLog(std::make_shared<GDASLLog>("one", "user", true), "net");
    EXPECT_THROW(registry.setLog(nullptr, "net"), NSException);
    systemLog.takeEvents();
    const auto second = std::make_shared<GDASLLog>("two", "user", true);
    registry.setLog(second, "net");
    EXPECT_THAT(systemLog.takeEvents(), ElementsAre("open two user now", "remove 0", "close one"));
    EXPECT_EQ(registry.getLogForKey("net"), second);

    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, &second, i] {
            for (int n = 0; n < 100; ++n) {
                registry.setLog(second, std::to_string(i * 100 + n));
                EXPECT_EQ(registry.getLogForKey("net"), second);
                registry.setEnabled(n % 2 == 0);
                second->info("x");
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(registry.getLogForKey("399"), second);
}

TEST_F(LoggingTest, TheFileLoggerIsTheHostsChannel) {
    HeadlessMainBundle bundle;
    HeadlessSearchPaths paths;
    HeadlessFileSystem files;
    const ServiceScope bundleScope(bundle);
    const ServiceScope pathsScope(paths);
    const ServiceScope filesScope(files);
    files.add("/home/user/Support");
    systemLog.files = {{"/home/user/Support/Host/debugLog", 0}};

    KWFileLogger& logger = KWFileLogger::allocWithZone().init();
    EXPECT_EQ(&logger, &KWFileLogger::sharedKWFileLogger());
    EXPECT_EQ(&logger, &KWFileLogger::allocWithZone().init());
    logger.log().setLogToStdOut(true);
    logger.logInfo("started");
    EXPECT_THAT(systemLog.takeEvents(),
        ElementsAre("open Host org.example.Host now", "remove 0", "close file 0",
            "open file /home/user/Support/Host/debugLog", "add 0", "Host 6 started"));
    EXPECT_TRUE(files.fileExists("/home/user/Support/Host"));
    registry.setEnabled(false);
    logger.logInfo("unheard");
    EXPECT_THAT(systemLog.takeEvents(), IsEmpty());
    logger.log().close();
}

} // namespace
