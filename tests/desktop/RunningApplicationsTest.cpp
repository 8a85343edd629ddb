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
#include <csignal>
#include <filesystem>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace kw;
using namespace kw::test;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

/// A client of the display with one window, both gone with it.
class Client {
public:
    explicit Client(const std::string& displayName, const std::string& classes)
        : m_xcb(xcb_connect(displayName.c_str(), nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root)
        , m_window(xcb_generate_id(m_xcb)) {
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, 50, 50, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        setText("WM_CLASS", classes);
    }
    ~Client() { xcb_disconnect(m_xcb); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    xcb_window_t window() const { return m_window; }
    xcb_atom_t atom(const std::string& name) const {
        const auto size = static_cast<std::uint16_t>(name.size());
        return xcbReply(xcb_intern_atom_reply, m_xcb, xcb_intern_atom(m_xcb, 0, size, name.data()))
            ->atom;
    }
    void setText(const std::string& name, const std::string& text) {
        xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, m_window, atom(name), XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(text.size()), text.data());
    }
    void setNumber(const std::string& name, std::uint32_t number, xcb_atom_t type) {
        xcb_change_property(
            m_xcb, XCB_PROP_MODE_REPLACE, m_window, atom(name), type, 32, 1, &number);
    }
    void setProcess(int process, const std::string& machine = {}) {
        std::array<char, 256> name {};
        ::gethostname(name.data(), name.size() - 1);
        setText("WM_CLIENT_MACHINE", machine.empty() ? name.data() : machine);
        setNumber("_NET_WM_PID", static_cast<std::uint32_t>(process), XCB_ATOM_CARDINAL);
    }
    /// Shows it, and waits until the window manager has taken it and made it active.
    void map() {
        mapInBackground();
        waitUntilActive();
    }
    void mapInBackground() {
        xcb_map_window(m_xcb, m_window);
        EXPECT_TRUE(pumpUntil([&] {
            // Openbox may sleep on what it read while it started.
            ask("_NET_REQUEST_FRAME_EXTENTS", 0);
            return testing::Value(list(), testing::Contains(m_window));
        }));
    }
    void ask(const std::string& what, std::uint32_t first, std::uint32_t second = 0,
        std::uint32_t third = 0) {
        xcb_client_message_event_t event {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = m_window;
        event.type = atom(what);
        event.data.data32[0] = first;
        event.data.data32[1] = second;
        event.data.data32[2] = third;
        xcb_send_event(m_xcb, 0, m_root,
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<const char*>(&event));
        xcb_flush(m_xcb);
    }
    void activate() {
        ask("_NET_ACTIVE_WINDOW", /*a pager*/ 2);
        waitUntilActive();
    }
    /// The service's loop has heard of it, too.
    void waitUntilActive() {
        EXPECT_TRUE(
            pumpUntil([&] { return rootNumbers("_NET_ACTIVE_WINDOW") == Windows {m_window}; }));
        list(); // the server answers this after it has sent the others what happened before
        Platform::runLoop().runOnce(0);
    }
    bool isVisible() const {
        return xcbReply(xcb_get_window_attributes_reply, m_xcb,
                   xcb_get_window_attributes(m_xcb, m_window))
                   ->map_state
            == XCB_MAP_STATE_VIEWABLE;
    }
    using Windows = std::vector<xcb_window_t>;
    /// The topmost window comes last.
    Windows list() const { return rootNumbers("_NET_CLIENT_LIST_STACKING"); }

private:
    Windows rootNumbers(const std::string& name) const {
        const auto reply = xcbReply(xcb_get_property_reply, m_xcb,
            xcb_get_property(m_xcb, 0, m_root, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 100));
        const auto* const first =
            static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }

    xcb_connection_t* m_xcb;
    xcb_window_t m_root;
    xcb_window_t m_window;
};

class RunningApplicationsTest : public testing::Test {
protected:
    void startManager() {
        manager.emplace(std::vector<std::string> {"openbox", "--sm-disable"},
            std::map<std::string, std::optional<std::string>> {
                {"DISPLAY", display.name()}, {"HOME", folder.path()}});
        EXPECT_TRUE(pumpUntil([&] { return service.frontToBack().has_value(); }));
    }
    std::vector<RunningApplication> applications() {
        return service.frontToBack().value_or(std::vector<RunningApplication>());
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& application : applications())
            names.push_back(application.bundleName);
        return names;
    }
    /// A process whose program is a copy, in the folder.
    ChildProcess& start(const std::string& program) {
        fs::create_directories(fs::path(folder.path(program)).parent_path());
        fs::copy_file(fs::canonical("/bin/sleep"), folder.path(program));
        ChildProcess& process =
            processes.emplace_back(std::vector<std::string> {folder.path(program), "1000"});
        const auto link = "/proc/" + std::to_string(process.identifier()) + "/exe";
        EXPECT_TRUE(pumpUntil([&] { return fs::read_symlink(link) == folder.path(program); }));
        return process;
    }

    TemporaryFolder folder;
    PrivateDisplay display;
    std::optional<ChildProcess> manager;
    X11RunningApplications service {display.name(),
        FakeEnvironment {{"HOME", folder.path()}, {"XDG_DATA_HOME", folder.path("data")},
            {"XDG_DATA_DIRS", folder.path("shared")}, {"PATH", folder.path("bin")}}};
    std::list<ChildProcess> processes;
};

TEST_F(RunningApplicationsTest, TheOrderIsThatOfActivityNotOfTheStack) {
    startManager();
    Client a(display.name(), std::string("a\0a\0", 4));
    std::optional<Client> b(std::in_place, display.name(), std::string("b\0b\0", 4));
    Client c(display.name(), std::string("c\0c\0", 4));
    for (Client* const client : {&a, &*b, &c})
        client->map();
    for (Client* const client : {&a, &*b, &c, &a})
        client->activate();
    b->ask("_NET_RESTACK_WINDOW", 2);
    ASSERT_TRUE(pumpUntil([&] { return a.list().back() == b->window(); }));
    EXPECT_THAT(names(), ElementsAre("a", "c", "b"));

    c.ask("WM_CHANGE_STATE", /*IconicState*/ 3);
    ASSERT_TRUE(pumpUntil([&] { return !c.isVisible(); }));
    EXPECT_THAT(names(), ElementsAre("a", "c", "b"));

    Client panel(display.name(), std::string("panel\0panel\0", 12));
    panel.setNumber("_NET_WM_WINDOW_TYPE", panel.atom("_NET_WM_WINDOW_TYPE_DOCK"), XCB_ATOM_ATOM);
    panel.mapInBackground();
    EXPECT_THAT(names(), ElementsAre("a", "c", "b"));

    c.activate();
    const auto cWindow = c.window();
    b->activate();
    b.reset();
    EXPECT_TRUE(pumpUntil([&] { return names().size() == 2; }));
    EXPECT_THAT(names(), UnorderedElementsAre("a", "c"));
    EXPECT_THAT(a.list(), testing::Contains(cWindow));
}

TEST_F(RunningApplicationsTest, WithoutAWindowManagerNobodyKnows) {
    EXPECT_EQ(service.frontToBack(), std::nullopt);
    for (int life = 0; life < 2; ++life) {
        startManager();
        EXPECT_EQ(service.frontToBack(), std::vector<RunningApplication>());
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
    const auto entry = [&](const std::string& name, const std::string& lines) {
        folder.write("shared/applications/" + name, "[Desktop Entry]\nType=Application\n" + lines);
    };
    entry("tool.desktop", "Name=By Identifier\n");
    entry("declared.desktop", "Name=Tool\nStartupWMClass=tool\n");
    entry("hidden.desktop", "Name=Hidden\nStartupWMClass=tool\nHidden=true\n");
    entry("vendor/script.desktop", "Name=Script\nExec=script %U\n");
    entry("org.example.Gone.desktop", "Name=Gone\nExec=script\n");
    folder.writeProgram("bin/script");

    const int player = start("Player.app/usr/bin/player").identifier();
    const int tool = start("bin/tool").identifier();
    const int python = start("bin/python3.11").identifier();
    const int unknown = start("bin/unknown").identifier();
    const int nameless = start("bin/nameless").identifier();
    ChildProcess& dead = start("bin/dead");
    const int gone = dead.identifier();
    dead.signal(SIGKILL);
    dead.wait();

    std::list<Client> clients;
    const auto open = [&](const char* instance, const char* windowClass, int process,
                          const char* machine = "") -> Client& {
        const std::string end(1, '\0');
        Client& client = clients.emplace_back(display.name(), instance + end + windowClass + end);
        if (process != 0)
            client.setProcess(process, machine);
        return client;
    };
    open("", "Player", player);
    open("second window", "Player", player);
    open("tool", "Other", tool);
    open("x", "VENDOR-Script", python);
    open("unknown", "Unknown", unknown);
    open("", "", nameless);
    open("g", "G", gone).setText("_KDE_NET_WM_DESKTOP_FILE", "org.example.Gone.desktop");
    open("host", "Other", ::getpid());
    open("remote", "Remote", player, "another.example");
    const auto leader = clients.back().window();
    Client& led = open("one", "Led", 0);
    led.setNumber("WM_CLIENT_LEADER", leader, XCB_ATOM_WINDOW);
    open("two", "Also led", 0).setNumber("WM_CLIENT_LEADER", leader, XCB_ATOM_WINDOW);
    for (Client& client : clients)
        client.map();
    led.activate(); // names both

    const std::string bin = folder.path("bin/");
    const std::vector<RunningApplication> expected {
        {"Player", folder.path("Player.app"), player},
        {"Tool", bin + "tool", tool},
        {"Script", bin + "script", python},
        {"Unknown", bin + "unknown", unknown},
        {"nameless", bin + "nameless", nameless},
        {"Gone", bin + "script", gone},
        {"Host", "/Host.app", ::getpid()},
        {"Remote", "", 0},
        {"Led", "", 0},
    };
    for (int again = 0; again < 2; ++again)
        EXPECT_THAT(applications(), testing::UnorderedElementsAreArray(expected));
}

} // namespace
