// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgProcessService.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <backends/linux/xdg/OpenProgram.h>
#include <backends/linux/xdg/XdgWorkspace.h>
#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/PumpUntil.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using namespace kw;
namespace fs = std::filesystem;

class OpenProgramTest : public testing::Test {
protected:
    /// A program that tells what it is called and with what.
    void program(const std::string& path, const std::string& script = "echo \"$0|$*|$APPDIR\"") {
        folder.write(path, "#!/bin/sh\n" + script + "\n");
        fs::permissions(folder.path(path), fs::perms::owner_all);
    }
    /// Waits until a detached program has written a line; the path in it is below the folder.
    std::string result() const {
        EXPECT_TRUE(test::pumpUntil([&] { return folder.read("result").ends_with('\n'); }));
        const auto line = folder.read("result");
        fs::remove(folder.path("result"));
        return line;
    }

    test::TemporaryFolder folder;
    test::FakeEnvironment environment {
        {"HOME", folder.path("home")}, {"XDG_CACHE_HOME", folder.path("cache")}};
};

TEST_F(OpenProgramTest, StartsWhatIsAtThePath) {
    const std::string odd = "-a'\"\n%s $(x)";
    std::error_code error;
    const std::string open = folderWithOpenProgram(error, environment) + "/open";
    ASSERT_FALSE(error);
    program("tools/xdg-open", "echo \"xdg|$1\"");
    program("1.app/AppRun");
    program("1.app/1");
    program("2.app/usr/bin/2");
    folder.write("2.app/2", "not executable");
    folder.write("2.app/0.desktop", "[Desktop Entry]\nExec=other\n");
    program("2.app/other");
    program("3.app/bin/my player");
    folder.write("3.app/usr/bin/x.desktop",
        "Exec=a\n[Desktop Entry]\nExec = \"/opt/my player\" %U\n[Desktop Action b]\nExec=b");
    fs::create_directory(folder.path("3.app/3"));
    program(odd + ".app/" + odd);
    program(odd + "/file");
    program("-n");
    program("Folder/Folder");
    folder.write("4.app/4.desktop", "[Desktop Entry] \r\nExec=env A=1 other %U\r\n");
    program("4.app/other");
    folder.write("5.app/5.desktop", "[Desktop Entry]\nExec=env\n");
    fs::permissions(folder.write("text", "exit 1"), fs::perms::owner_all);

    const std::pair<std::string, std::string> rows[] = {
        {folder.path("1.app"), folder.path("1.app/AppRun") + "||"},
        {folder.path("2.app//"), folder.path("2.app//") + "/usr/bin/2||"},
        {folder.path("3.app"), folder.path("3.app/bin/my player") + "||"},
        {odd + ".app", "./" + odd + ".app/" + odd + "||"},
        {folder.path(odd + "/file"), folder.path(odd + "/file") + "||"},
        {"-n", "./-n||"},
        {folder.path("4.app"), folder.path("4.app/other") + "||"},
        {folder.path("5.app"), "xdg|" + folder.path("5.app")},
        {folder.path("Folder"), "xdg|" + folder.path("Folder")},
        {folder.path("text"), "xdg|" + folder.path("text")},
        {"https://example.org", "xdg|https://example.org"},
    };
    const auto current = fs::current_path();
    fs::current_path(folder.path());
    for (const auto& [path, expected] : rows) {
        test::ChildProcess opened({open, path},
            {{"PATH", folder.path("tools") + ":/usr/bin:/bin"}, {"APPDIR", "/mounted"}});
        std::string output;
        for (auto line = opened.readLine(); line; line = opened.readLine())
            output += (output.empty() ? "" : "\n") + *line;
        EXPECT_EQ(output, expected) << path;
    }
    fs::current_path(current);
}

TEST_F(OpenProgramTest, ShellsThatAreLaunchedFindIt) {
    fs::permissions(folder.write("cache/kwtoolkit/bin/open", "exit 1"), fs::perms::owner_read);
    XdgProcessService processes(environment);
    program("It's.app/AppRun", "echo \"$PATH\" >'" + folder.path("result") + "'");
    EXPECT_FALSE(processes.launch("/bin/sh", {"-c", "open \"$0\"", folder.path("It's.app")}));
    EXPECT_EQ(result(), std::string(::getenv("PATH")) + "\n");

    EXPECT_EQ(processes.launch("/no/program", {}), std::errc::no_such_file_or_directory);
    environment["XDG_CACHE_HOME"] = folder.path("a:b");
    EXPECT_FALSE(XdgProcessService(environment).launch("/bin/true", {}));
}

TEST_F(OpenProgramTest, StartsApplicationsByIdentifier) {
    const auto script = "echo \"$0\" >'" + folder.path("result") + "'";
    program("Running.app/Running", script);
    program("Applications/Other.app/AppRun", script);
    folder.write("Applications/Other.app/other.desktop", "");
    HeadlessMainBundle bundle;
    bundle.values = {.identifier = "running", .bundlePath = folder.path("Running.app")};
    const ServiceScope scope(bundle);
    XdgWorkspace workspace(environment, folder.path("Applications"));
    EXPECT_TRUE(workspace.launchApplication("running"));
    EXPECT_EQ(result(), folder.path("Running.app/Running\n"));
    EXPECT_TRUE(workspace.launchApplication("other"));
    EXPECT_EQ(result(), folder.path("Applications/Other.app/AppRun\n"));
    fs::remove_all(folder.path("Running.app"));
    for (const auto* const identifier : {"", "missing", "running"})
        EXPECT_FALSE(workspace.launchApplication(identifier)) << identifier;
}

} // namespace
