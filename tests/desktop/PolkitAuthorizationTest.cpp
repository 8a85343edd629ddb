// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Authorizations with a real polkit, on a system bus that only the test sees.
#include <backends/linux/xdg/PolkitAuthorizationService.h>

#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

using namespace kw;

/// What an ordinary user without the right to anything else is told.
std::string resultAs(const char* user, const std::string& program) {
    return test::ForkedTask([&](int output) {
        const passwd* const entry = ::getpwnam(user);
        if (::setgid(entry->pw_gid) != 0 || ::setuid(entry->pw_uid) != 0)
            return;
        ::signal(SIGCHLD, SIG_IGN); // as a host may have it
        const auto authorization = PolkitAuthorizationService().create();
        const auto says = [&](const auto& value) {
            test::say(output, std::to_string(value) + " ");
        };
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
    }).result();
}

TEST(PolkitAuthorization, RunsProgramsAsPolkitAllows) {
    const test::TemporaryFolder folder;
    const auto program = folder.write("program",
        "#!/bin/sh\n{ id -u; printf '<%s>' \"$@\"; } >'" + folder.path("output") + "'\nexit 7\n");
    std::filesystem::permissions(program, std::filesystem::perms::all);
    folder.write("rules/50-test.rules",
        "polkit.addRule(function(action, subject) {\n"
        "    if (subject.user == 'nobody' && action.id == 'org.freedesktop.policykit.exec')\n"
        "        return polkit.Result.YES;\n"
        "});\n");
    const auto result = test::ForkedTask([&](int output) {
        if (::unshare(CLONE_NEWNS) != 0)
            return test::say(output, "no namespace");
        if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || ::mount("tmpfs", "/run", "tmpfs", 0, "mode=0755") != 0
            || ::mount(
                   folder.path("rules").c_str(), "/etc/polkit-1/rules.d", nullptr, MS_BIND, nullptr)
                != 0)
            return test::say(output, "no mount");
        std::filesystem::create_directory("/run/dbus");
        test::ChildProcess bus({"dbus-daemon", "--system", "--nofork", "--nopidfile",
            "--print-address=1"}); // which starts polkitd, and takes it along
        if (!bus.readLine())
            return test::say(output, "no bus");
        test::say(output, resultAs("nobody", program) + "\n" + resultAs("daemon", program));
    }).result();
    if (result == "no namespace")
        GTEST_SKIP() << "needs a mount namespace, which takes root";
    EXPECT_EQ(result,
        "0 0 2 0 0 1 1 -1 1792 0 \n"
        "2 2 2 0 0 1 1 -1 32512 0 ");
    EXPECT_EQ(folder.read("output"), "0\n<a b><\"'\n$(x)><>");
    EXPECT_EQ(PolkitAuthorizationService(test::FakeEnvironment {{"PATH", folder.path()}}).create(),
        nullptr);
}

} // namespace
