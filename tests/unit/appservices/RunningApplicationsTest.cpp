// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Which application was active before the host, and the host's relaunch.
#include <KWToolkit/appservices/KWActiveApplications.h>
#include <KWToolkit/appservices/NSApplication+Relaunch.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/headless/HeadlessApplicationService.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessRunningApplications.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <KWToolkit/platform/ui/NSApplication.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::Property;
using testing::Throws;

class RunningApplicationsTest : public testing::Test {
protected:
    HeadlessMainBundle bundle;
    HeadlessRunningApplications running;
    HeadlessWorkspace workspace;
    HeadlessApplicationService application;
    const ServiceScope<HeadlessMainBundle> bundleScope {bundle};
    const ServiceScope<HeadlessRunningApplications> runningScope {running};
    const ServiceScope<HeadlessWorkspace> workspaceScope {workspace};
    const ServiceScope<HeadlessApplicationService> applicationScope {application};
};

TEST_F(RunningApplicationsTest, ThePreviousOneIsTheFirstThatIsNotInFrontAsTheHost) {
    const RunningApplication host {"Host", "/Applications/Host.app", 1};
    const RunningApplication copy {"Host", "/tmp/Copy.app", 2};
    const RunningApplication tool {"Tool", "/usr/bin/tool.d/", 3};
    const RunningApplication remote {"Remote", "", 0};
    const RunningApplication nameless {"", "/nameless", 5};
    const struct {
        const char* hostName;
        std::optional<std::vector<RunningApplication>> list;
        std::optional<RunningApplication> previous;
        std::optional<std::string> name, path;
    } rows[] = {
        {"Host", {}, {}, {}, {}},
        {"Host", {{}}, {}, {}, {}},
        {"Host", {{host, tool, copy}}, tool, "tool", tool.bundlePath},
        {"Host", {{tool, host, copy}}, tool, "tool", tool.bundlePath},
        {"Host", {{copy, host}}, host, "Host", host.bundlePath},
        {"Host", {{remote, host}}, remote, {}, {}},
        {"", {{nameless}}, nameless, "nameless", nameless.bundlePath},
    };
    for (const auto& row : rows) {
        bundle.values.name = row.hostName;
        running.applications = row.list;
        EXPECT_EQ(KWActiveApplications::previousActiveApplication(), row.previous);
        EXPECT_EQ(KWActiveApplications::previousActiveApplicationName(), row.name);
        EXPECT_EQ(KWActiveApplications::previousActiveApplicationPath(), row.path);
        EXPECT_EQ(
            KWActiveApplications::activeApplications(), row.previous ? row.list : std::nullopt);
    }
    bundle.values.name = "Host";
    running.applications = {host};
    EXPECT_THAT(&KWActiveApplications::previousActiveApplicationPath,
        Throws<NSException>(Property(&NSException::name, NSRangeException)));
}

TEST_F(RunningApplicationsTest, ARelaunchHappensOnceAndOnlyWhereTheHostEnds) {
    auto& center = NSNotificationCenter::defaultCenter();
    application.refuses = true;
    relaunchApp();
    application.refuses = false;
    const auto observe = [&](NSNotificationCenter::Block block) {
        return center.addObserver(
            NSApplicationWillTerminateNotification, nullptr, std::move(block));
    };
    auto observer = observe([](const auto&) { throw std::runtime_error("no"); });
    EXPECT_THROW(relaunchApp(), std::runtime_error);
    center.removeObserver(observer);
    EXPECT_THAT(workspace.launchedApplications, ElementsAre());

    // One that posts as well, or terminates again, gets one instance and one end.
    observer = observe([&](const auto& notification) {
        center.removeObserver(observer);
        EXPECT_EQ(notification.object, &NSApplication::sharedApplication());
        NSApplication::sharedApplication().terminate();
        center.postNotificationName(notification.name);
        EXPECT_EQ(workspace.launchedApplications.size(), 1U);
    });
    relaunchApp();
    center.postNotificationName(NSApplicationWillTerminateNotification);
    EXPECT_THAT(workspace.launchedApplications, ElementsAre("org.example.Host"));
    EXPECT_EQ(application.exits, 1);
}

class Delegate final : public NSObject {
public:
    static Class& classObject() {
        static Class object("Delegate", NSObject::classObject(),
            {method("applicationShouldTerminate:", &Delegate::applicationShouldTerminate)});
        return object;
    }
    Class& isa() const override { return classObject(); }

    bool agrees = false;

private:
    bool applicationShouldTerminate(NSApplication&) { return agrees; }
};

TEST_F(RunningApplicationsTest, TheDelegateIsAskedBeforeTheEnd) {
    Delegate delegate;
    NSApplication::sharedApplication().setDelegate(delegate);
    for (const bool agrees : {false, true}) {
        delegate.agrees = agrees;
        relaunchApp();
        EXPECT_EQ(application.exits, agrees);
        EXPECT_EQ(workspace.launchedApplications.size(), agrees ? 1U : 0U);
    }
}

TEST(NSNotificationCenter, ObserversMayLeaveWhileTheyAreTold) {
    NSNotificationCenter center;
    std::string told;
    NSNotificationCenter::Observer second {};
    const auto own = std::make_shared<NSNotificationCenter::Observer>();
    *own = center.addObserver("n", nullptr, [&, own](const auto&) {
        center.removeObserver(*own);
        center.removeObserver(second);
        center.addObserver("n", nullptr, [&](const auto&) { told += "new "; });
        told += own.use_count() == 2 ? "first " : "gone "; // the block is there until it returns
    });
    second = center.addObserver("n", nullptr, [&](const auto&) { told += "second "; });
    center.addObserver("n", nullptr, [&](const auto&) { told += "third "; });
    NSObject object;
    center.addObserver("n", &object, [&](const auto&) { told += "other "; });
    center.postNotificationName("n");
    EXPECT_EQ(told, "first third ");
    EXPECT_EQ(own.use_count(), 1);
}

} // namespace
