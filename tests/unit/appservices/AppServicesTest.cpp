// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Crash reports, support paths and login items.
#include <KWToolkit/appservices/KWCrashLogFinder.h>
#include <KWToolkit/appservices/KWPathUtils.h>
#include <KWToolkit/appservices/KWStartUpUtils.h>
#include <KWToolkit/appservices/UKCrashReporter.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessDefaultsStore.h>
#include <KWToolkit/platform/headless/HeadlessFileSystem.h>
#include <KWToolkit/platform/headless/HeadlessLoginItems.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using namespace kw;

FileDate second(int number) { return FileDate(std::chrono::seconds(number)); }

class AppServicesTest : public testing::Test {
protected:
    HeadlessMainBundle bundle;
    HeadlessDefaultsStore defaults;
    HeadlessFileSystem files;
    HeadlessLoginItems login;
    HeadlessSearchPaths paths;
    HeadlessWorkspace workspace;
    const ServiceScope<HeadlessMainBundle> bundleScope {bundle};
    const ServiceScope<HeadlessDefaultsStore> defaultsScope {defaults};
    const ServiceScope<HeadlessFileSystem> filesScope {files};
    const ServiceScope<HeadlessLoginItems> loginScope {login};
    const ServiceScope<HeadlessSearchPaths> pathsScope {paths};
    const ServiceScope<HeadlessWorkspace> workspaceScope {workspace};
};

TEST_F(AppServicesTest, FindsTheNewestReportOfTheApplication) {
    using Entries = std::vector<std::pair<const char*, int>>;
    const struct {
        Entries entries;
        std::optional<std::string> found;
    } rows[] = {
        {{}, std::nullopt},
        {{{"host_1.crash", 1}, {"host_2.crash", 3}, {"host_3.crash", 2}}, "/f/host_2.crash"},
        // Of equal dates the first.
        {{{"host_b.crash", 5}, {"host_a.crash", 5}}, "/f/host_b.crash"},
        {{{"hosttools_1.crash", 9}, {"host.crash", 9}, {"Host_1.crash", 9}}, std::nullopt},
        {{{"host_1.crash.gz", 9}, {"host_1.CRASH", 9}, {"host_", 9}}, std::nullopt},
        {{{"host_.crash", 1}}, "/f/host_.crash"},
        // What counts is the path below the folder.
        {{{"old/host_1.crash", 9}}, std::nullopt},
        {{{"host_old/1.crash", 9}, {"host_old/2.txt", 9}}, "/f/host_old/1.crash"},
        {{{"host_1.crash", 1}, {"host_1.crash/host_2.crash", 2}}, "/f/host_1.crash/host_2.crash"},
    };
    for (const auto& row : rows) {
        HeadlessFileSystem disk;
        const ServiceScope scope(disk);
        for (const auto& [path, date] : row.entries)
            disk.add("/f/" + std::string(path), second(date));
        EXPECT_EQ(UKCrashReporterFindTenFiveCrashReportPath("host", "/f"), row.found);
    }
}

TEST_F(AppServicesTest, HandsEachNewestReportOutOnce) {
    const std::string folder = "/home/user/Library/Logs/CrashReporter/";
    EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), std::nullopt);
    files.add(folder + "host_2010-01-01.crash", second(1));
    files.add(folder + "host_2010-02-01.crash", second(2));
    EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), folder + "host_2010-02-01.crash");
    EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), std::nullopt);
    files.add(folder + "host_2010-03-01.crash", second(3));
    EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), folder + "host_2010-03-01.crash");
    // The name alone is remembered, and of one report only.
    files.add(folder + "host_2010-02-01.crash", second(4));
    EXPECT_EQ(KWCrashLogFinder::lastCrashReportPath(), folder + "host_2010-02-01.crash");
    EXPECT_EQ(defaults.read("org.example.Host"),
        (PropertyMap {{"KWLastCrashLogName", "host_2010-02-01.crash"}}));
}

TEST_F(AppServicesTest, SupportFolderIsMadeWithoutItsParents) {
    const std::string folder = "/home/user/Support/Host";
    EXPECT_EQ(KWPathUtils::applicationSupportFolder(), folder);
    EXPECT_EQ(KWPathUtils::createApplicationSupportFolder(), folder);
    EXPECT_FALSE(files.fileExists(folder));

    files.add("/home/user/Support");
    EXPECT_EQ(KWPathUtils::applicationSupportFolder(), folder);
    EXPECT_FALSE(files.fileExists(folder));
    EXPECT_EQ(KWPathUtils::createApplicationSupportFolder(), folder);
    EXPECT_EQ(KWPathUtils::createApplicationSupportFolder(), folder);
    EXPECT_EQ(files.enumerate("/home/user").size(), 2u);

    paths.support.reset();
    EXPECT_EQ(KWPathUtils::applicationSupportFolder(), "/tmp/Host");
}

TEST_F(AppServicesTest, ApplicationsAreFoundByIdentifier) {
    workspace.applications = {{"org.example.Player", "/Applications/Player.app"}};
    EXPECT_EQ(
        KWPathUtils::applicationPathForBundleID("org.example.Player"), "/Applications/Player.app");
    EXPECT_EQ(KWPathUtils::applicationPathForBundleID("org.example"), std::nullopt);
}

TEST_F(AppServicesTest, ANameMatchesAnywhereInALoginItemsPath) {
    const struct {
        std::optional<std::string> path;
        const char* name;
        bool isFound;
    } rows[] = {
        {"/Mailbox/Other.app", "Mail", true},
        {"/Applications/mail.app", "Mail", false},
        {"~/Applications/A.app", "/home/user/App", true},
        {"~/Applications/A.app", "~", false},
        {"/A.app", "", false},
        {std::nullopt, "A", false},
    };
    for (const auto& row : rows) {
        login.items = {LoginItem {.path = row.path}};
        EXPECT_EQ(KWStartUpUtils::ApplicationIsStartUpItem(row.name), row.isFound) << row.name;
        EXPECT_FALSE(KWStartUpUtils::removeApplicationToLogin(row.name));
        EXPECT_EQ(login.items->empty(), row.isFound) << row.name;
    }
}

TEST_F(AppServicesTest, TheHostIsOneLoginItemAtTheFront) {
    using Items = std::vector<LoginItem>;
    bundle.values.bundlePath = "/Applications/Host.app";
    const LoginItem host {"/Applications/Host.app", false};
    const LoginItem hidden {"/Applications/Host.app", true};
    const LoginItem other {"/Applications/Other.app", true, "token"};
    EXPECT_FALSE(KWStartUpUtils::addApplicationToStartUpItems(false));
    EXPECT_EQ(login.items, Items {host});
    login.items = {host, hidden, other, {.path = "/Host/X.app"}, {}, host};
    EXPECT_FALSE(KWStartUpUtils::addApplicationToStartUpItems(true));
    EXPECT_EQ(login.items, (Items {hidden, other, {}}));
    // The name only says what is replaced.
    EXPECT_FALSE(KWStartUpUtils::addApplicationToStartUpItems("Other", false));
    EXPECT_EQ(login.items, (Items {host, hidden, {}}));
    EXPECT_TRUE(KWStartUpUtils::ApplicationIsStartUpItem());
    EXPECT_FALSE(KWStartUpUtils::removeApplicationToLogin());
    EXPECT_EQ(login.items, Items {{}});
    // Removing nothing makes a list all the same, asking does not.
    login.items.reset();
    EXPECT_FALSE(KWStartUpUtils::ApplicationIsStartUpItem());
    EXPECT_EQ(login.items, std::nullopt);
    EXPECT_FALSE(KWStartUpUtils::removeApplicationToLogin());
    EXPECT_EQ(login.items, Items());
    bundle.values.name.clear();
    EXPECT_THROW(KWStartUpUtils::addApplicationToStartUpItems(true), NSException);
}

} // namespace
