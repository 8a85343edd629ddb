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
    const RunningApplication preview {"Preview", "/Applications/Preview.app", 3};
    const RunningApplication tool {"Tool", "/usr/bin/tool.d/", 4};
    const RunningApplication remote {"Remote", "", 0};
    using List = std::vector<RunningApplication>;
    using Text = std::optional<std::string>;
    const struct {
        std::optional<List> list;
        std::optional<RunningApplication> previous;
        Text name, path;
    } rows[] = {
        {std::nullopt, std::nullopt, {}, {}},
        {List {}, std::nullopt, {}, {}},
        {List {host, preview, tool}, preview, "Preview", preview.bundlePath},
        {List {tool, host, preview}, tool, "tool", tool.bundlePath},
        {List {copy, preview}, preview, "Preview", preview.bundlePath},
        {List {host, copy}, copy, "Copy", copy.bundlePath},
        {List {remote, host}, remote, {}, {}},
    };
    for (const auto& row : rows) {
        running.applications = row.list;
        EXPECT_EQ(KWActiveApplications::previousActiveApplication(), row.previous);
        EXPECT_EQ(KWActiveApplications::previousActiveApplicationName(), row.name);
        EXPECT_EQ(KWActiveApplications::previousActiveApplicationPath(), row.path);
        EXPECT_EQ(KWActiveApplications::activeApplications().has_value(), row.previous.has_value());
    }

    running.applications = {host};
    try {
        KWActiveApplications::previousActiveApplicationPath();
        ADD_FAILURE() << "not thrown";
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSRangeException);
    }
    // A host that has no name is not found, also where another one has none.
    bundle.values.name.clear();
    EXPECT_EQ(KWActiveApplications::previousActiveApplication(), host);
    running.applications = {{"", "/usr/bin/nameless", 5}};
    EXPECT_EQ(KWActiveApplications::previousActiveApplicationName(), "nameless");
}

class Doorkeeper final : public NSObject {
public:
    explicit Doorkeeper(std::function<bool()> answer)
        : m_answer(std::move(answer)) { }
    static Class& classObject() {
        static Class object("Doorkeeper", NSObject::classObject(),
            {method("applicationShouldTerminate:", &Doorkeeper::shouldTerminate)});
        return object;
    }
    Class& isa() const override { return classObject(); }

private:
    bool shouldTerminate(NSApplication&) { return m_answer(); }
    std::function<bool()> m_answer;
};

TEST_F(RunningApplicationsTest, ARelaunchHappensOnceAndOnlyWhereTheHostEnds) {
    auto& center = NSNotificationCenter::defaultCenter();
    const auto post = [&] { center.postNotificationName(NSApplicationWillTerminateNotification); };
    relaunchApp();
    EXPECT_THAT(workspace.launchedApplications, ElementsAre("org.example.Host"));
    EXPECT_EQ(application.exits, 1);
    post();
    EXPECT_EQ(workspace.launchedApplications.size(), 1u);

    application.refuses = true;
    relaunchApp();
    application.refuses = false;
    auto keeper = std::make_shared<Doorkeeper>([] { return false; });
    NSApplication::sharedApplication().setDelegate(keeper);
    relaunchApp();
    keeper = std::make_shared<Doorkeeper>([]() -> bool { throw std::runtime_error("no"); });
    NSApplication::sharedApplication().setDelegate(keeper);
    EXPECT_THROW(relaunchApp(), std::runtime_error);
    // One that posts itself, or terminates again, gets one instance and one end.
    keeper = std::make_shared<Doorkeeper>([&] {
        EXPECT_EQ(workspace.launchedApplications.size(), 1u);
        EXPECT_EQ(application.exits, 1);
        NSApplication::sharedApplication().terminate();
        post();
        post();
        return true;
    });
    NSApplication::sharedApplication().setDelegate(keeper);
    relaunchApp();
    EXPECT_EQ(workspace.launchedApplications.size(), 2u);
    EXPECT_EQ(application.exits, 2);
}

TEST(NSNotificationCenter, ObserversMayLeaveWhileTheyAreTold) {
    NSNotificationCenter center;
    std::vector<std::string> told;
    NSNotificationCenter::Observer first {}, second {}, third {};
    auto kept = std::make_shared<int>(0);
    const std::weak_ptr<int> alive = kept;
    first = center.addObserver("n", nullptr, [&, kept = std::move(kept)](const auto&) {
        center.removeObserver(first);
        center.removeObserver(second);
        center.addObserver("n", nullptr, [&](const auto&) { told.emplace_back("new"); });
        EXPECT_EQ(kept.use_count(), 1); // the block is there until it returns
        told.emplace_back("first");
    });
    second = center.addObserver("n", nullptr, [&](const auto&) { told.emplace_back("second"); });
    third = center.addObserver("n", nullptr, [&](const auto&) { told.emplace_back("third"); });
    center.postNotificationName("n");
    EXPECT_THAT(told, ElementsAre("first", "third"));
    EXPECT_TRUE(alive.expired());
    center.removeObserver(third);
    told.clear();
    center.postNotificationName("n");
    EXPECT_THAT(told, ElementsAre("new"));
}

} // namespace
