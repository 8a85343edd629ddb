// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessClock.h>
#include <backends/linux/dbus/SdBus.h>
#include <backends/linux/dbus/SessionWorkspace.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/PrivateBus.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using namespace kw;
using namespace kw::test;

struct Value {
    const char* group;
    const char* key;
    const char* type;
    unsigned value;
};

/// Stands in for the desktop portal, on a thread of its own.
class Portal {
public:
    Portal() {
        sd_bus* opened = nullptr;
        sd_bus_open_user(&opened);
        m_bus.reset(opened);
        sd_bus_add_object_vtable(opened, nullptr, "/org/freedesktop/portal/desktop",
            "org.freedesktop.portal.Settings", methods, this);
        sd_bus_request_name(opened, "org.freedesktop.portal.Desktop", 0);
        m_thread = std::thread([this] {
            while (!m_isDone) {
                if (sd_bus_process(m_bus.get(), nullptr) == 0)
                    sd_bus_wait(m_bus.get(), 10'000);
            }
        });
    }
    ~Portal() {
        m_isDone = true;
        m_thread.join();
    }

    std::vector<Value> values; // changed between calls only

private:
    static int readAll(sd_bus_message* call, void* self, sd_bus_error*) {
        sd_bus_message* made = nullptr;
        sd_bus_message_new_method_return(call, &made);
        const Message reply(made);
        sd_bus_message_open_container(made, 'a', "{sa{sv}}");
        for (const Value& value : static_cast<Portal*>(self)->values)
            sd_bus_message_append(made, "{sa{sv}}", value.group, 2, "other", "as", 1, "x",
                value.key, value.type, value.value);
        sd_bus_message_close_container(made);
        return sd_bus_send(nullptr, made, nullptr);
    }
    static constexpr sd_bus_vtable methods[] = {SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("ReadAll", "as", "a{sa{sv}}", readAll, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END};

    Bus m_bus;
    std::thread m_thread;
    std::atomic<bool> m_isDone = false;
};

class ReducedMotionTest : public testing::Test {
protected:
    static void useBus(const std::string& address) {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }
    bool reducesMotion() { return workspace.accessibilityDisplayShouldReduceMotion(); }

    TemporaryFolder folder;
    HeadlessClock clock;
    const ServiceScope<HeadlessClock> clockScope {clock};
    SessionWorkspace workspace {FakeEnvironment {{"XDG_CONFIG_HOME", folder.path()}}};
};

TEST_F(ReducedMotionTest, ThePortalDecidesThenTheFiles) {
    constexpr const char* appearance = "org.freedesktop.appearance";
    constexpr const char* gnome = "org.gnome.desktop.interface";
    const PrivateBus bus;
    useBus(bus.address());
    Portal portal;
    const struct {
        std::vector<Value> values;
        bool withoutFiles, withFiles;
    } rows[] {
        {{{appearance, "reduced-motion", "u", 1}}, true, true},
        {{{gnome, "enable-animations", "b", 0}, {appearance, "reduced-motion", "u", 0}}, true,
            true},
        {{{appearance, "reduced-motion", "u", 0}}, false, true},
        {{{gnome, "enable-animations", "b", 0}}, true, true},
        {{{gnome, "enable-animations", "b", 1}}, false, false},
        {{{gnome, "reduced-motion", "u", 1}}, false, true},
        {{{appearance, "reduced-motion", "b", 1}}, false, true},
        {{}, false, true},
    };
    for (const auto& row : rows) {
        portal.values = row.values;
        std::filesystem::remove(folder.path("kdeglobals"));
        EXPECT_EQ(reducesMotion(), row.withoutFiles) << &row - std::begin(rows);
        folder.write("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
        EXPECT_EQ(reducesMotion(), row.withoutFiles) << "is kept";
        clock.advance(4);
        EXPECT_EQ(reducesMotion(), row.withFiles) << &row - std::begin(rows);
        clock.advance(4);
    }
}

TEST_F(ReducedMotionTest, ABusThatHangsIsNotWaitedFor) {
    const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_GE(listener, 0);
    sockaddr_un address {.sun_family = AF_UNIX};
    folder.path("bus").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 5), 0);
    useBus("unix:path=" + folder.path("bus"));
    const SteadyClock watch;
    const double before = watch.now();
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(reducesMotion());
        clock.advance(0.2);
    }
    EXPECT_LT(watch.now() - before, 2);
    ::close(listener);
}

} // namespace
