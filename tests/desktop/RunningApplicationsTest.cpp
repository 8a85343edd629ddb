// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Windows of several clients under a window manager.
#include <backends/linux/x11/X11RunningApplications.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/PrivateDisplay.h>
#include <tests/support/PumpUntil.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace kw;
using namespace kw::test;
using testing::Contains;
namespace fs = std::filesystem;

/// A client of the display with one window, both gone with it.
class Client {
public:
    using Windows = std::vector<xcb_window_t>;

    Client(const PrivateDisplay& display, const std::string& instance,
        const std::string& windowClass, int process = 0)
        : m_xcb(xcb_connect(display.name().c_str(), nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root)
        , window(xcb_generate_id(m_xcb)) {
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, window, m_root, 0, 0, 50, 50, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        setText("WM_CLASS", instance + '\0' + windowClass + '\0');
        std::array<char, 256> machine {};
        ::gethostname(machine.data(), machine.size() - 1);
        setText("WM_CLIENT_MACHINE", machine.data());
        if (process != 0)
            setNumber("_NET_WM_PID", static_cast<std::uint32_t>(process), XCB_ATOM_CARDINAL);
    }
    ~Client() { xcb_disconnect(m_xcb); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    xcb_atom_t atom(const std::string& name) const {
        const auto size = static_cast<std::uint16_t>(name.size());
        return xcbReply(xcb_intern_atom_reply, m_xcb, xcb_intern_atom(m_xcb, 0, size, name.data()))
            ->atom;
    }
    void setText(const std::string& name, const std::string& text) {
        xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, window, atom(name), XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(text.size()), text.data());
    }
    void setNumber(const std::string& name, std::uint32_t number, xcb_atom_t type) {
        xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32, 1, &number);
    }
    /// Asks the window manager for something.
    void ask(const std::string& what, std::uint32_t detail) {
        xcb_client_message_event_t event {XCB_CLIENT_MESSAGE, 32, 0, window, atom(what), {}};
        event.data.data32[0] = detail;
        xcb_send_event(m_xcb, 0, m_root,
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<const char*>(&event));
        xcb_flush(m_xcb);
    }
    /// Waits until the window manager has taken it.
    void map() {
        xcb_map_window(m_xcb, window);
        EXPECT_TRUE(pumpUntil([&] {
            // Openbox may sleep on what it read while it started.
            ask("_NET_REQUEST_FRAME_EXTENTS", 0);
            return testing::Value(list(), Contains(window));
        }));
    }
    /// Waits until it has become active, as a new window does, and the service's loop knows it.
    void waitUntilActive() {
        EXPECT_TRUE(pumpUntil([&] { return list("_NET_ACTIVE_WINDOW") == Windows {window}; }));
        list(); // the server answers this after it has sent the others what happened before
        Platform::runLoop().runOnce(0);
    }
    void activate() {
        ask("_NET_ACTIVE_WINDOW", /*a pager*/ 2);
        waitUntilActive();
    }
    bool isVisible() const {
        const auto request = xcb_get_window_attributes(m_xcb, window);
        return xcbReply(xcb_get_window_attributes_reply, m_xcb, request)->map_state
            == XCB_MAP_STATE_VIEWABLE;
    }
    /// The topmost window comes last.
    Windows list(const char* name = "_NET_CLIENT_LIST_STACKING") const {
        const auto reply = xcbReply(xcb_get_property_reply, m_xcb,
            xcb_get_property(m_xcb, 0, m_root, atom(name), XCB_ATOM_WINDOW, 0, 100));
        const auto* const first =
            static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }

private:
    xcb_connection_t* m_xcb;
    xcb_window_t m_root;

public:
    const xcb_window_t window;
};

class RunningApplicationsTest : public testing::Test {
protected:
    void startManager() {
        manager.emplace(std::vector<std::string> {"openbox", "--sm-disable"},
            std::map<std::string, std::optional<std::string>> {
                {"DISPLAY", display.name()}, {"HOME", folder.path()}});
        EXPECT_TRUE(pumpUntil([&] { return service.frontToBack().has_value(); }));
    }
    std::string names() {
        std::string names;
        for (const auto& application :
            service.frontToBack().value_or(std::vector<RunningApplication>()))
            names += application.bundleName;
        return names;
    }
    /// A process whose program is a copy, in the folder.
    int start(const std::string& program) {
        const std::string path = folder.path(program);
        fs::create_directories(fs::path(path).parent_path());
        fs::copy_file(fs::canonical("/bin/sleep"), path);
        processes.emplace_back(std::vector<std::string> {path, "1000"});
        const int process = processes.back().identifier();
        const auto link = "/proc/" + std::to_string(process) + "/exe";
        EXPECT_TRUE(pumpUntil([&] { return fs::read_symlink(link) == path; }));
        return process;
    }

    TemporaryFolder folder;
    PrivateDisplay display;
    std::optional<ChildProcess> manager;
    X11RunningApplications service {display.name(),
        FakeEnvironment {{"HOME", folder.path()}, {"XDG_DATA_DIRS", folder.path("shared")},
            {"PATH", folder.path("bin")}}};
    std::list<ChildProcess> processes;
    std::vector<RunningApplication> applications;
};

TEST_F(RunningApplicationsTest, TheOrderIsThatOfActivityNotOfTheStack) {
    startManager();
    Client a(display, "a", "a"), c(display, "c", "c"), panel(display, "panel", "panel");
    std::optional<Client> b(std::in_place, display, "b", "b");
    for (Client* const client : {&a, &*b, &c}) {
        client->map();
        client->waitUntilActive();
    }
    for (Client* const client : {&a, &*b, &c, &a})
        client->activate();
    b->ask("_NET_RESTACK_WINDOW", 2);
    ASSERT_TRUE(pumpUntil([&] { return a.list().back() == b->window; }));
    EXPECT_EQ(names(), "acb");
    c.ask("WM_CHANGE_STATE", /*IconicState*/ 3);
    ASSERT_TRUE(pumpUntil([&] { return !c.isVisible(); }));
    EXPECT_EQ(names(), "acb");
    panel.setNumber("_NET_WM_WINDOW_TYPE", panel.atom("_NET_WM_WINDOW_TYPE_DOCK"), XCB_ATOM_ATOM);
    panel.map();
    EXPECT_EQ(names(), "acb");
    c.activate();
    b.reset();
    EXPECT_TRUE(pumpUntil([&] { return names() == "ca"; }));
}

TEST_F(RunningApplicationsTest, WithoutAWindowManagerNobodyKnows) {
    EXPECT_EQ(service.frontToBack(), std::nullopt);
    for (int life = 0; life < 2; ++life) {
        startManager();
        manager.reset(); // leaves its name on the root window
        EXPECT_TRUE(pumpUntil([&] { return !service.frontToBack(); }));
    }
    display.kill();
    EXPECT_TRUE(pumpUntil([&] { return !Platform::runLoop().runOnce(0); }));
    EXPECT_EQ(service.frontToBack(), std::nullopt);
    display.restart();
    EXPECT_EQ(service.frontToBack(), std::nullopt);
    startManager();
}

TEST_F(RunningApplicationsTest, ApplicationsHaveTheNamesThatUsersKnow) {
    startManager();
    HeadlessMainBundle bundle;
    bundle.values.bundlePath = "/Host.app";
    const ServiceScope scope(bundle);
    const std::pair<std::string, std::string> entries[] {
        {"tool.desktop", "Name=By Identifier"},
        {"declared.desktop", "Name=Tool\nStartupWMClass=tool"},
        {"a.desktop", "Name=Hidden\nStartupWMClass=tool\nHidden=true"},
        {"vendor/script.desktop", "Name=Script\nExec=script %U"},
        {"org.example.Gone.desktop", "Name=Gone\nExec=script"},
    };
    for (const auto& [name, lines] : entries)
        folder.write("shared/applications/" + name, "[Desktop Entry]\n" + lines + '\n');
    const std::string script = folder.writeProgram("bin/script");
    const int player = start("Player.app/usr/bin/player");
    const int tool = start("bin/tool");
    const int python = start("bin/python3.11");
    const int unknown = start("bin/unknown");
    const int gone = std::numeric_limits<int>::max();
    const auto led = [](Client& client) {
        client.setNumber("WM_CLIENT_LEADER", 1, XCB_ATOM_WINDOW);
    };
    const auto remote = [](Client& client) { client.setText("WM_CLIENT_MACHINE", "x.example"); };
    const auto named = [](Client& client) {
        client.setText("_KDE_NET_WM_DESKTOP_FILE", "org.example.Gone.desktop");
    };

    const struct {
        const char *instance, *windowClass;
        int process;
        std::optional<RunningApplication> application; ///< nothing for another window of one
        std::function<void(Client&)> prepare = [](Client&) { };
    } rows[] {
        {"a", "Player", player, {{"Player", folder.path("Player.app"), player}}},
        {"b", "Other", player, {}},
        {"tool", "Other", tool, {{"Tool", folder.path("bin/tool"), tool}}},
        {"x", "VENDOR-Script", python, {{"Script", script, python}}},
        {"u", "Unknown", unknown, {{"Unknown", folder.path("bin/unknown"), unknown}}},
        {"g", "G", gone, {{"Gone", script, gone}}, named},
        {"host", "Other", ::getpid(), {{"Host", "/Host.app", ::getpid()}}},
        {"remote", "Remote", player, {{"Remote", "", 0}}, remote},
        {"two", "Also led", 0, {}, led},
        {"one", "Led", 0, {{"Led", "", 0}}, led},
        {"", "", 0, {}},
    };
    std::list<Client> clients;
    for (const auto& row : rows) {
        row.prepare(clients.emplace_back(display, row.instance, row.windowClass, row.process));
        clients.back().map();
        clients.back().waitUntilActive();
        if (row.application)
            applications.insert(applications.begin(), *row.application);
    }
    for (int again = 0; again < 2; ++again)
        EXPECT_EQ(service.frontToBack(), applications);
}

} // namespace
