// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/PFMoveApplication.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSUserDefaults.h>
#include <KWToolkit/platform/headless/HeadlessAlertService.h>
#include <KWToolkit/platform/headless/HeadlessApplicationService.h>
#include <KWToolkit/platform/headless/HeadlessAuthorizationService.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/platform/headless/HeadlessDefaultsStore.h>
#include <KWToolkit/platform/headless/HeadlessFileSystem.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessProcessService.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace kw;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Lines = std::vector<std::string>;

const std::string source = "/home/user/Downloads/Host.app";

/// A desktop on which the host runs from the Downloads folder, and a user who agrees.
struct World {
    HeadlessMainBundle bundle;
    HeadlessDefaultsStore defaults;
    HeadlessFileSystem files;
    HeadlessSearchPaths paths;
    HeadlessWorkspace workspace;
    HeadlessAlertService alerts;
    HeadlessApplicationService application;
    HeadlessAuthorizationService authorization;
    HeadlessProcessService processes;
    HeadlessConsole console;
    Lines trashed;
    std::string unmovable; ///< a path that does not go to the Trash

    World() {
        bundle.values.bundlePath = source;
        bundle.values.executablePath = source + "/Host";
        for (const auto& path : {source, std::string("/Applications")})
            files.add(path);
        alerts.answer = [](NSAlert&) { return NSAlertFirstButtonReturn; };
        workspace.trashing = [this](const std::string& folder, const std::string& name) {
            const std::string path = folder + "/" + name;
            if (path == unmovable)
                return std::make_error_code(std::errc::cross_device_link);
            trashed.push_back(path);
            files.remove(path);
            return std::error_code();
        };
    }

    void useHome() {
        files.readOnly.insert("/Applications");
        files.add("/home/user/Applications");
    }
    void useAuthorization() { files.readOnly.insert("/Applications"); }

    void run() {
        const ServiceScope bundleScope(bundle);
        const ServiceScope defaultsScope(defaults);
        const ServiceScope filesScope(files);
        const ServiceScope pathsScope(paths);
        const ServiceScope workspaceScope(workspace);
        const ServiceScope alertsScope(alerts);
        const ServiceScope applicationScope(application);
        const ServiceScope authorizationScope(authorization);
        const ServiceScope processesScope(processes);
        const ServiceScope consoleScope(console);
        PFMoveToApplicationsFolderIfNecessary();
    }

    bool isSuppressed() {
        const ServiceScope scope(defaults);
        return NSUserDefaults("org.example.Host")
            .boolForKey("moveToApplicationsFolderAlertSuppress");
    }
};

constexpr const char* moving = "Moving myself to the Applications folder";
constexpr const char* notMain = "Can't write to /Applications, checking ~/Applications";
constexpr const char* userFolder = "User applicationsDirectory: /home/user/Applications";
constexpr const char* copyError = "ERROR -- Could not copy myself to /Applications";
constexpr const char* authorizedError =
    "ERROR -- Could not copy myself to /Applications with authorization";

enum class End { nothing, declined, moved, movedHome, failed };

TEST(MoveApplication, EndsAsTheWorldIs) {
    const struct {
        const char* name;
        std::function<void(World&)> arrange;
        Lines lines;
        End end;
    } rows[] = {
        {"suppressed",
            [](World& w) {
                w.defaults.write(
                    "org.example.Host", {{"moveToApplicationsFolderAlertSuppress", 1}});
            },
            {}, End::nothing},
        {"there already", [](World& w) { w.bundle.values.bundlePath = "/Applications/Host.app"; },
            {}, End::nothing},
        {"in the own folder",
            [](World& w) { w.bundle.values.bundlePath = "/home/user/Applications/Host.app"; }, {},
            End::nothing},
        {"in the last of several",
            [](World& w) {
                w.paths.localApplications = {"/real", "/Applications"};
                w.bundle.values.bundlePath = "/Applications/Host.app";
            },
            {}, End::nothing},
        {"nearly there", [](World& w) { w.bundle.values.bundlePath = "/ApplicationsOld/H.app"; },
            {}, End::nothing},
        {"no bundle", [](World& w) { w.bundle.values.bundlePath += "/Host"; }, {}, End::nothing},
        {"not writable", [](World& w) { w.files.readOnly.insert(source); },
            {"No access to delete the app. Not offering to move it."}, End::nothing},
        {"declined", [](World& w) { w.alerts.answer = {}; }, {}, End::declined},
        {"main folder", [](World&) {}, {moving}, End::moved},
        {"old copy there", [](World& w) { w.files.add("/Applications/Host.app"); }, {moving},
            End::moved},
        {"old copy stays",
            [](World& w) {
                w.files.add("/Applications/Host.app");
                w.unmovable = "/Applications/Host.app";
            },
            {moving, "ERROR -- Could not trash '/Applications/Host.app'"}, End::failed},
        {"copy fails",
            [](World& w) {
                w.files.copyError = std::make_error_code(std::errc::no_space_on_device);
            },
            {moving,
                "Could not copy '" + source
                    + "' to '/Applications/Host.app' (No space left on device)",
                copyError},
            End::failed},
        {"older system", [](World& w) { w.application.version = 824.9; }, {moving, copyError},
            End::failed},
        {"source stays", [](World& w) { w.unmovable = source; },
            {moving, "ERROR -- Could not trash '" + source + "'",
                "WARNING -- Could not delete application after moving it to Applications folder"},
            End::moved},
        {"last folder", [](World& w) { w.paths.localApplications = {"/real", "/Applications"}; },
            {moving}, End::moved},
        {"home folder",
            [](World& w) {
                w.useHome();
                w.paths.userApplications = {"/real", "/home/user/Applications"};
            },
            {notMain, userFolder, moving}, End::movedHome},
        {"home folder not writable",
            [](World& w) {
                w.useHome();
                w.files.readOnly.insert("/home/user/Applications");
            },
            {notMain, userFolder, moving}, End::moved},
        {"authorized", &World::useAuthorization, {notMain, userFolder, moving}, End::moved},
        {"authorization canceled",
            [](World& w) {
                w.useAuthorization();
                w.authorization.status = AuthorizationStatus::canceled;
            },
            {notMain, userFolder, moving, "INFO -- Not moving because user canceled authorization"},
            End::declined},
        {"authorization denied",
            [](World& w) {
                w.useAuthorization();
                w.authorization.status = AuthorizationStatus::denied;
            },
            {notMain, userFolder, moving, authorizedError}, End::failed},
        {"no authorization",
            [](World& w) {
                w.useAuthorization();
                w.authorization.isAvailable = false;
            },
            {notMain, userFolder, moving, authorizedError}, End::failed},
        {"no program runs",
            [](World& w) {
                w.useAuthorization();
                w.authorization.starts = false;
            },
            {notMain, userFolder, moving, authorizedError}, End::failed},
        {"no home",
            [](World& w) {
                w.useAuthorization();
                w.paths.userApplications.clear();
            },
            {notMain, "User applicationsDirectory: (null)", moving}, End::moved},
        {"no folder at all", [](World& w) { w.files.remove("/Applications"); },
            {notMain, userFolder, moving, authorizedError}, End::failed},
        {"no application",
            [](World& w) {
                w.useAuthorization();
                w.bundle.values.bundlePath = "/home/user/Downloads/Host.AppImage";
                w.files.add("/home/user/Downloads/Host.AppImage");
            },
            {notMain, userFolder, moving, authorizedError}, End::failed},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        World world;
        row.arrange(world);
        const std::string bundlePath = world.bundle.values.bundlePath;
        const bool wasSuppressed = world.isSuppressed();
        world.run();
        EXPECT_EQ(world.console.lines(), row.lines);
        EXPECT_EQ(world.isSuppressed(), wasSuppressed);
        const bool isMoved = row.end == End::moved || row.end == End::movedHome;
        EXPECT_EQ(world.application.exits, isMoved);
        EXPECT_EQ(world.alerts.shown.size(),
            row.end == End::nothing      ? 0U
                : row.end == End::failed ? 2U
                                         : 1U);
        if (row.end == End::failed) {
            const NSAlert& alert = world.alerts.shown.back();
            EXPECT_EQ(alert.messageText(), "Could not move to Applications folder");
            EXPECT_TRUE(alert.informativeText().empty() && alert.buttons().empty()
                && !alert.showsSuppressionButton());
        }
        // Whatever runs with privileges names the destination, and only where one is allowed.
        for (const auto& run : world.authorization.runs)
            EXPECT_EQ(run.back(), "/Applications/Host.app");
        EXPECT_EQ(world.authorization.living, 0);
        if (!isMoved) {
            EXPECT_TRUE(world.processes.launched.empty());
            EXPECT_THAT(world.trashed, Not(Contains(bundlePath)));
            continue;
        }
        const std::string to = row.end == End::movedHome ? "/home/user/Applications/Host.app"
                                                         : "/Applications/Host.app";
        EXPECT_EQ(world.files.fileExists(to), world.authorization.runs.empty());
        EXPECT_EQ(testing::Value(world.trashed, Contains(source)), world.unmovable != source);
        EXPECT_THAT(world.processes.launched,
            ElementsAre(ElementsAre("/bin/sh", "-c",
                "while [ `ps -p 42 | wc -l` -gt 1 ]; do sleep 0.1; done; open '" + to + "'")));
    }
}

TEST(MoveApplication, JudgesThePrivilegedProgramsEachInItsWay) {
    const struct {
        std::optional<int> removal, copy;
        std::size_t runs;
        bool isMoved;
    } rows[] = {
        {0x0100, 0, 2, true}, // a removal that had nothing to remove
        {9, 0, 1, false}, {std::nullopt, 0, 1, false}, {0, 0x0100, 2, false}, {0, 9, 2, false},
        {0, std::nullopt, 2, false}, {0, 0x80, 2, true}, // of the bits in between nothing is asked
    };
    for (const auto& row : rows) {
        World world;
        world.useAuthorization();
        world.authorization.run = [&](const Lines& run) {
            return run[0] == "/bin/rm" ? row.removal : row.copy;
        };
        world.run();
        EXPECT_EQ(world.application.exits, row.isMoved);
        EXPECT_THAT(world.authorization.askedFlags, ElementsAre(19U));
        const std::vector<Lines> runs {{"/bin/rm", "-rf", "/Applications/Host.app"},
            {"/bin/cp", "-pR", source, "/Applications/Host.app"}};
        EXPECT_EQ(world.authorization.runs,
            std::vector(runs.begin(), runs.begin() + static_cast<std::ptrdiff_t>(row.runs)));
    }
}

TEST(MoveApplication, AsksInTheWordsOfTheCase) {
    const std::string info = "I can move myself to the Applications folder if you'd like.";
    const std::string downloads = " This will keep your Downloads folder uncluttered.";
    const struct {
        std::function<void(World&)> arrange;
        std::string message, information;
    } rows[] = {
        {[](World&) {}, "Move to Applications folder?", info + downloads},
        {[](World& w) { w.paths.downloads = {"/elsewhere", "/home/user/Down"}; },
            "Move to Applications folder?", info + downloads},
        {[](World& w) { w.paths.downloads.clear(); }, "Move to Applications folder?", info},
        {[](World& w) {
             w.paths.downloads.clear();
             w.application.version = 824;
         },
            "Move to Applications folder?", info + downloads},
        {[](World& w) {
             w.paths.downloads = {"/home"};
             w.application.version = 824;
             w.bundle.values.bundlePath = "/home/user/Downloads/a/Host.app";
             w.files.add("/home/user/Downloads/a/Host.app");
         },
            "Move to Applications folder?", info},
        {&World::useAuthorization, "Move to Applications folder?",
            info + " Note that this will require an administrator password."},
        {&World::useHome, "Move to Applications folder in your Home folder?",
            "You don't have permissions to put me in the main Applications folder, but I can move "
            "myself to the Applications folder in your Home folder instead."
                + downloads},
    };
    for (const auto& row : rows) {
        World world;
        world.alerts.answer = {};
        row.arrange(world);
        world.run();
        ASSERT_EQ(world.alerts.shown.size(), 1U);
        const NSAlert& alert = world.alerts.shown[0];
        EXPECT_EQ(alert.messageText(), row.message);
        EXPECT_EQ(alert.informativeText(), row.information);
        EXPECT_THAT(alert.buttons(), ElementsAre("Move to Applications Folder", "Do Not Move"));
        EXPECT_EQ(alert.showsSuppressionButton(), world.application.version > 824.9);
        if (alert.showsSuppressionButton()) {
            EXPECT_EQ(alert.suppressionButton().controlSize, NSControlSize::small);
            EXPECT_EQ(alert.suppressionButton().font.size, 11);
        }
    }
}

TEST(MoveApplication, RemembersWhoDoesNotWantToBeAskedAgain) {
    const struct {
        double version;
        bool isOn;
        int response;
        bool isSuppressed;
    } rows[] = {
        {949, false, NSAlertFirstButtonReturn + 1, false},
        {949, true, NSAlertFirstButtonReturn + 1, true},
        {949, true, NSAlertFirstButtonReturn, false},
        {824, false, NSAlertFirstButtonReturn + 1, true},
        {825, false, NSAlertFirstButtonReturn + 1, false},
    };
    for (const auto& row : rows) {
        World world;
        world.application.version = row.version;
        world.alerts.answer = [&](NSAlert& alert) {
            alert.suppressionButton().isOn = row.isOn;
            return row.response;
        };
        world.run();
        EXPECT_EQ(world.isSuppressed(), row.isSuppressed);
    }
}

TEST(MoveApplication, ThrowsAwayOnlyWhatIsInTheWay) {
    // Deliberate: on an older system, too, which then cannot copy.
    for (const double version : {949.0, 824.0}) {
        World world;
        world.application.version = version;
        world.files.add("/Applications/Host.app");
        world.run();
        EXPECT_THAT(world.trashed, Contains("/Applications/Host.app"));
        EXPECT_EQ(world.application.exits, version > 824);
    }
}

TEST(MoveApplication, SpeaksTheUsersLanguage) {
    const test::TemporaryFolder resources;
    resources.write("Base.lproj/MoveApplication.strings",
        "\"Move to Applications folder?\" = \"M\";\n"
        "\"I can move myself to the Applications folder if you'd like.\" = \"I\";\n"
        "\"This will keep your Downloads folder uncluttered.\" = \"D\";\n"
        "\"Move to Applications Folder\" = \"Y\";\n\"Do Not Move\" = \"N\";\n"
        "\"Could not move to Applications folder\" = \"F\";\n");
    World world;
    world.bundle.values.resourcePath = resources.path();
    world.files.copyError = std::make_error_code(std::errc::io_error);
    world.run();
    std::string texts;
    for (const NSAlert& alert : world.alerts.shown) {
        texts += alert.messageText() + "|" + alert.informativeText() + "|";
        for (const std::string& button : alert.buttons())
            texts += button + "|";
    }
    EXPECT_EQ(texts, "M|I D|Y|N|F||");
}

} // namespace
