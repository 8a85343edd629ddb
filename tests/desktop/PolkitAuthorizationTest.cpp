// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Authorizations with a real polkit, on a system bus that only the test sees.
#include <backends/linux/xdg/PolkitAuthorizationService.h>

#include <KWToolkit/appservices/PFMoveApplication.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <KWToolkit/platform/headless/HeadlessAlertService.h>
#include <KWToolkit/platform/headless/HeadlessApplicationService.h>
#include <KWToolkit/platform/headless/HeadlessDefaultsStore.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessProcessService.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>
#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <optional>

namespace {

using namespace kw;

/// What the task says when an ordinary user runs it.
std::string resultAs(const char* user, const std::function<void(int output)>& task) {
    return test::ForkedTask([&](int output) {
        const passwd* const entry = ::getpwnam(user);
        if (::setgid(entry->pw_gid) == 0 && ::setuid(entry->pw_uid) == 0)
            task(output);
    }).result();
}

/// What the task says in a system with a polkit that lets "nobody" do anything. Nothing where there
/// can be no such system.
std::optional<std::string> resultWithPolkit(const std::function<void(int output)>& task) {
    const test::TemporaryFolder folder;
    folder.write("50-test.rules",
        "polkit.addRule(function(action, subject) {\n"
        "    if (subject.user == 'nobody' && action.id == 'org.freedesktop.policykit.exec')\n"
        "        return polkit.Result.YES;\n"
        "});\n");
    const auto result = test::ForkedTask([&](int output) {
        if (::unshare(CLONE_NEWNS) != 0)
            return test::say(output, "no namespace");
        if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || ::mount("tmpfs", "/run", "tmpfs", 0, "mode=0755") != 0
            || ::mount(folder.path().c_str(), "/etc/polkit-1/rules.d", nullptr, MS_BIND, nullptr)
                != 0)
            return test::say(output, "no mount");
        std::filesystem::create_directory("/run/dbus");
        test::ChildProcess bus({"dbus-daemon", "--system", "--nofork", "--nopidfile",
            "--print-address=1"}); // which starts polkitd, and takes it along
        if (!bus.readLine())
            return test::say(output, "no bus");
        task(output);
    }).result();
    return result == "no namespace" ? std::nullopt : std::optional(result);
}

void useAuthorization(int output, const std::string& program) {
    ::signal(SIGCHLD, SIG_IGN); // as a host may have it
    const auto authorization = PolkitAuthorizationService().create();
    const auto says = [&](const auto& value) { test::say(output, std::to_string(value) + " "); };
    const auto run = [&](const std::string& path, const std::vector<std::string>& arguments) {
        says(authorization->executeWithPrivileges(path, arguments));
    };
    for (const std::uint32_t flags : {19U, 0U})
        says(static_cast<int>(authorization->copyRights(kAuthorizationRightExecute, flags)));
    says(static_cast<int>(authorization->copyRights("system.privilege.other", 19)));
    run("/bin/true", {std::string("a\0b", 3)});
    says(authorization->wait().has_value());
    run("/bin/sh", {"-c", "exit 3"});
    run(program, {"a b", "\"'\n$(x)", ""});
    says(::waitpid(-1, nullptr, 0)); // there is no child to be left over
    says(authorization->wait().value_or(-1));
    says(authorization->wait().has_value());
}

TEST(PolkitAuthorization, RunsProgramsAsPolkitAllows) {
    const test::TemporaryFolder folder;
    const auto program = folder.write("program",
        "#!/bin/sh\n{ id -u; printf '<%s>' \"$@\"; } >'" + folder.path("output") + "'\nexit 7\n");
    std::filesystem::permissions(program, std::filesystem::perms::all);
    const auto result = resultWithPolkit([&](int output) {
        for (const char* const user : {"nobody", "daemon"})
            test::say(output,
                resultAs(user, [&](int inner) { useAuthorization(inner, program); }) + "\n");
    });
    if (!result)
        GTEST_SKIP() << "needs a mount namespace, which takes root";
    EXPECT_EQ(result,
        "0 0 2 0 0 1 1 -1 1792 0 \n"
        "2 2 2 0 0 1 1 -1 -1 0 \n");
    EXPECT_EQ(folder.read("output"), "0\n<a b><\"'\n$(x)><>");
    EXPECT_EQ(PolkitAuthorizationService(test::FakeEnvironment {{"PATH", folder.path()}}).create(),
        nullptr);
}

TEST(PolkitAuthorization, MovesAnApplicationToWhereItsUserMayNotWrite) {
    const test::TemporaryFolder folder;
    const std::string bundle = folder.path("home/Host's \"new\".app");
    const std::string destination = folder.path("Applications/Host's \"new\".app");
    folder.write("home/Host's \"new\".app/Host", "new");
    folder.write("Applications/Host's \"new\".app/old", "old");
    for (const std::string& path : {folder.path("home"), bundle, bundle + "/Host"})
        ASSERT_EQ(::chown(path.c_str(), 65534, 65534), 0);
    const auto result = resultWithPolkit([&](int output) {
        test::say(output, resultAs("nobody", [&](int inner) {
            ::setenv("HOME", folder.path("home").c_str(), 1);
            HeadlessMainBundle host;
            host.values.bundlePath = bundle;
            HeadlessSearchPaths paths;
            paths.localApplications = {folder.path("Applications")};
            HeadlessDefaultsStore defaults;
            HeadlessAlertService alerts;
            alerts.answer = [](NSAlert&) { return NSAlertFirstButtonReturn; };
            HeadlessApplicationService application;
            HeadlessProcessService processes;
            const ServiceScope hostScope(host);
            const ServiceScope pathsScope(paths);
            const ServiceScope defaultsScope(defaults);
            const ServiceScope alertsScope(alerts);
            const ServiceScope applicationScope(application);
            const ServiceScope processesScope(processes);
            PFMoveToApplicationsFolderIfNecessary();
            test::say(inner, std::to_string(application.exits));
        }));
    });
    if (!result)
        GTEST_SKIP() << "needs a mount namespace, which takes root";
    EXPECT_EQ(result, "1");
    EXPECT_EQ(folder.names("Applications"), std::set {lastPathComponent(destination)});
    EXPECT_EQ(folder.names(destination), std::set<std::string> {"Host"});
    EXPECT_FALSE(std::filesystem::exists(bundle));
    EXPECT_EQ(folder.names("home/.local/share/Trash/files"), std::set {lastPathComponent(bundle)});
}

} // namespace
