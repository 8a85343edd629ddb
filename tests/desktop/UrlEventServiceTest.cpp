// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// URLs that are too long for a command line, and a bus that goes away.
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/url/KWUrlDelegate.h>
#include <backends/linux/dbus/DBusUrlEventService.h>
#include <backends/linux/dbus/PortalWorkspace.h>
#include <backends/linux/dbus/SdBus.h>
#include <tests/support/PrivateBus.h>
#include <tests/support/PumpUntil.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <thread>

namespace {

using namespace kw;
using namespace kw::test;

class Listener final : public NSObject {
public:
    static Class& classObject() {
        static Class object(
            "Listener", NSObject::classObject(), {method("open:", &Listener::open)});
        return object;
    }
    Class& isa() const override { return classObject(); }
    void open(std::vector<std::string> parameters) { calls.push_back(std::move(parameters)); }

    std::vector<std::vector<std::string>> calls;
};

class UrlEventServiceTest : public testing::Test {
protected:
    UrlEventServiceTest() { ::setenv("DBUS_SESSION_BUS_ADDRESS", bus->address().c_str(), 1); }

    std::optional<PrivateBus> bus {std::in_place};
    HeadlessMainBundle bundle;
    const ServiceScope<HeadlessMainBundle> bundleScope {bundle};
    DBusUrlEventService owner;
    const ServiceScope<DBusUrlEventService> ownerScope {owner};
    Listener listener;
};

TEST_F(UrlEventServiceTest, LongURLsArriveWhole) {
    std::vector<std::string> urls(3, "app://open");
    const std::string longWord(1 << 20, 'x');
    urls[0].append("&!p!&").append(longWord);
    for (int i = 0; i < 5'000; ++i)
        urls[1] += "&!p!&";
    const KWUrlDelegate dispatcher(listener);
    std::optional<UrlReception> reception;
    // As another process does: with a connection of its own.
    std::thread second([&] { reception = DBusUrlEventService().receive(urls); });
    EXPECT_TRUE(pumpUntil([this] { return listener.calls.size() == 3; }));
    second.join();
    EXPECT_EQ(reception, UrlReception::elsewhere);
    EXPECT_EQ(listener.calls.at(0).at(0), longWord);
    EXPECT_EQ(listener.calls.at(1), std::vector<std::string>(5'000));
}

TEST_F(UrlEventServiceTest, ABusThatGoesAwayIsMissedAndFoundAgain) {
    const KWUrlDelegate dispatcher(listener);
    EXPECT_TRUE(owner.listen());
    bus.reset();
    EXPECT_TRUE(pumpUntil([this] { return !owner.listen(); }));
    EXPECT_EQ(owner.receive({"app://open&!p!&1"}), UrlReception::argumentsOnly);
    while (Platform::runLoop().runOnce(0)) { } // nothing keeps it busy
    bus.emplace();
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus->address().c_str(), 1);
    EXPECT_EQ(owner.receive({"app://open&!p!&2"}), UrlReception::here);
    EXPECT_EQ(listener.calls.size(), 2u);
    bundle.values.identifier = "noDomain";
    EXPECT_EQ(DBusUrlEventService().receive({}), UrlReception::argumentsOnly);
}

/// Stands in for the desktop portal: writes down the URL that it is to open.
int openURI(sd_bus_message* call, void* opened, sd_bus_error*) {
    const char* window = nullptr;
    const char* url = nullptr;
    sd_bus_message_read(call, "ss", &window, &url);
    *static_cast<std::string*>(opened) = url;
    return sd_bus_reply_method_return(call, "o", "/request");
}

TEST_F(UrlEventServiceTest, ASandboxOpensURLsThroughThePortal) {
    static const sd_bus_vtable methods[] = {SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("OpenURI", "ssa{sv}", "o", openURI, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END};
    sd_bus* opened = nullptr;
    ASSERT_GE(sd_bus_open_user(&opened), 0);
    const Bus portal(opened);
    std::string url;
    sd_bus_add_object_vtable(opened, nullptr, "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.OpenURI", methods, &url);
    ASSERT_GE(sd_bus_request_name(opened, "org.freedesktop.portal.Desktop", 0), 0);
    EXPECT_TRUE(PortalWorkspace().openURL("mailto:a@b.c?SUBJECT=x&BODY=%20"));
    EXPECT_TRUE(pumpUntil([&] {
        sd_bus_process(opened, nullptr);
        return !url.empty();
    }));
    EXPECT_EQ(url, "mailto:a@b.c?SUBJECT=x&BODY=%20");
    bus.reset();
    EXPECT_FALSE(PortalWorkspace().openURL("mailto:a@b.c"));
}

} // namespace
