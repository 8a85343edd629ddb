// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/HotkeySuspension.h>
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace kw;

class Host : public NSObject {
public:
    static Class& classObject() {
        static Class object("Host", NSObject::classObject(),
            {
                method("quit", [](Host& host) { host.perform("quit"); }),
                method("toggle", [](Host& host) { host.perform("toggle"); }),
                method("open:", [](Host&, const std::string&) {}),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }

    void perform(const char* action) {
        performed.emplace_back(action);
        if (onAction)
            std::exchange(onAction, nullptr)();
    }

    std::vector<std::string> performed;
    std::function<void()> onAction;
};

struct ManagerTest : testing::Test {
    ~ManagerTest() override {
        while (!manager.registeredHotkeys().empty()) {
            const std::uint16_t key = manager.registeredHotkeys().begin()->first;
            manager.unregisterHotkey(key, false, false, false, false);
        }
    }

    HeadlessHotkeyService service;
    ServiceScope<HeadlessHotkeyService> scope {service};
    KWGlobalHotkeyManager& manager = KWGlobalHotkeyManager::hotkeyManager();
    Host host;

    const KWHotkeyObject* registration(std::uint16_t key) {
        const auto found = manager.registeredHotkeys().find(key);
        return found == manager.registeredHotkeys().end() ? nullptr : found->second.get();
    }
};

TEST_F(ManagerTest, ThereIsOneHoweverItIsAskedFor) {
    manager.registerHotkey(40, SEL("quit"), host, true, false, false, true);
    KWGlobalHotkeyManager::initialize();
    EXPECT_EQ(&KWGlobalHotkeyManager::sharedFramistan(), &manager);
    EXPECT_EQ(&KWGlobalHotkeyManager::allocWithZone().init(), &manager);
    EXPECT_EQ(manager.registeredHotkeys().size(), 1u);
    service.press({40, 0x0300});
    EXPECT_EQ(host.performed.size(), 1u); // and one handler
}

TEST_F(ManagerTest, KeysAreTheKeyCodePlusTheMask) {
    const struct {
        std::uint32_t keycode;
        bool command, control, option, shift;
        std::uint16_t key;
    } rows[] = {
        {40, true, false, false, true, 0x0328}, {40, false, false, false, false, 0x0028},
        {40, false, true, false, false, 0x1028}, {40, false, false, true, false, 0x0828},
        {0, true, true, true, true, 0x1B00},
        {0x10028, false, false, false, false, 0x0028}, // reduced to 16 bits
        {0x0128, true, false, false, false, 0x0228}, // an addition, not a bitwise or
    };
    for (const auto& row : rows) {
        manager.registerHotkey(
            row.keycode, SEL("quit"), host, row.command, row.control, row.option, row.shift);
        ASSERT_NE(registration(row.key), nullptr) << row.key;
        EXPECT_EQ(registration(row.key)->keycode(), static_cast<std::uint16_t>(row.keycode));
        EXPECT_EQ(manager.registeredHotkeys().size(), 1u);
        manager.unregisterHotkey(row.keycode, row.command, row.control, row.option, row.shift);
        EXPECT_TRUE(manager.registeredHotkeys().empty());
    }
}

TEST_F(ManagerTest, EveryModifierMaskIsACombinationOfItsOwn) {
    std::vector<std::uint32_t> pressed;
    std::vector<std::uint32_t> expected;
    for (int bits = 0; bits < 16; ++bits) {
        const Hotkey hotkey {.hasKey = true,
            .keycode = 9,
            .command = (bits & 1) != 0,
            .option = (bits & 2) != 0,
            .control = (bits & 4) != 0,
            .shift = (bits & 8) != 0};
        const std::uint32_t mask = (hotkey.command ? 0x0100u : 0) | (hotkey.option ? 0x0800u : 0)
            | (hotkey.control ? 0x1000u : 0) | (hotkey.shift ? 0x0200u : 0);
        manager.registerHotkey(hotkey, {"press", [&pressed, mask] { pressed.push_back(mask); }});
        EXPECT_EQ(manager.statusOfHotkey(hotkey), HotkeyStatus::live);
        expected.push_back(mask);
    }
    for (const std::uint32_t mask : expected)
        EXPECT_TRUE(service.press({9, mask}));
    EXPECT_EQ(pressed, expected);
    manager.unregisterHotkey({.hasKey = true, .keycode = 9});
    EXPECT_EQ(manager.registeredHotkeys().size(), 15u);
}

TEST_F(ManagerTest, AHotkeyThatNamesNoKeyIsIgnored) {
    const Hotkey none {.command = true};
    manager.registerHotkey(none, SEL("quit"), host);
    manager.registerHotkey(none, {"quit", nullptr});
    EXPECT_TRUE(manager.registeredHotkeys().empty());
    manager.registerHotkey(0, SEL("quit"), host, true, false, false, false);
    manager.unregisterHotkey(none);
    EXPECT_EQ(manager.statusOfHotkey(none), std::nullopt);
    EXPECT_EQ(manager.registeredHotkeys().size(), 1u);
}

TEST_F(ManagerTest, ANewRegistrationReplacesTheOld) {
    Host second;
    manager.registerHotkey(40, SEL("quit"), host, true, false, false, false);
    manager.registerHotkey(40, SEL("toggle"), second, true, false, false, false);
    manager.registerHotkey(40, SEL("quit"), host, true, false, true, false);
    EXPECT_EQ(manager.registeredHotkeys().size(), 2u);
    EXPECT_EQ(service.unregisterCount(), 1);
    EXPECT_EQ(registration(0x0128)->_target().get(), &second);
    EXPECT_EQ(registration(0x0128)->_action(), SEL("toggle"));

    EXPECT_TRUE(service.press({40, hotkeyCommandMask}));
    EXPECT_TRUE(host.performed.empty());
    EXPECT_EQ(second.performed, std::vector<std::string> {"toggle"});
}

TEST_F(ManagerTest, UnregisteringGivesBackOnlyWhatIsThere) {
    manager.registerHotkey(40, SEL("quit"), host, true, false, false, false);
    manager.unregisterHotkey(40, false, true, false, false);
    EXPECT_EQ(manager.registeredHotkeys().size(), 1u);
    manager.unregisterHotkey(40, true, false, false, false);
    manager.unregisterHotkey(40, true, false, false, false);
    EXPECT_EQ(service.registrationCount(), 0u);
    EXPECT_EQ(service.unregisterCount(), 1);
    EXPECT_FALSE(service.press({40, hotkeyCommandMask}));
}

TEST_F(ManagerTest, ACallableServesAsTarget) {
    int count = 0;
    manager.registerHotkey(7, {"quit", [&count] { ++count; }}, false, true, false, false);
    service.press({7, hotkeyControlMask});
    EXPECT_EQ(count, 1);
    EXPECT_EQ(registration(0x1007)->_action(), SEL("quit"));
    EXPECT_EQ(registration(0x1007)->_target(), nullptr);
}

TEST_F(ManagerTest, RefusedCombinationsStayRegistered) {
    service.setHeldElsewhere({40, hotkeyCommandMask}, true);
    manager.registerHotkey(40, SEL("quit"), host, true, false, false, false);
    manager.registerHotkey(256, SEL("quit"), host, true, false, false, false);
    const auto status = [this](std::uint32_t code) {
        return manager.statusOfHotkey(code, true, 0, 0, 0);
    };
    EXPECT_EQ(status(40), HotkeyStatus::heldElsewhere);
    EXPECT_EQ(status(256), HotkeyStatus::unsupported);
    EXPECT_EQ(status(41), std::nullopt);
    EXPECT_EQ(registration(0x0200)->eventHotKeyRef(), EventHotKeyRef::none);

    int changes = 0;
    manager.setStatusChangeHandler([&changes] { ++changes; });
    service.setHeldElsewhere({40, hotkeyCommandMask}, false);
    EXPECT_EQ(status(40), HotkeyStatus::live);
    service.setAvailable(false);
    EXPECT_EQ(status(40), HotkeyStatus::unavailable);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(manager.registeredHotkeys().size(), 2u);

    UnavailableHotkeyService none;
    const ServiceScope inner(none);
    manager.registerHotkey(9, SEL("quit"), host, true, false, false, false);
    EXPECT_EQ(status(9), HotkeyStatus::unavailable);
}

TEST_F(ManagerTest, APressForADeadTargetDoesNothing) {
    auto shared = std::make_shared<Host>();
    manager.registerHotkey(1, SEL("quit"), shared, true, false, false, false);
    shared.reset();
    EXPECT_TRUE(service.press({1, hotkeyCommandMask}));
    EXPECT_EQ(registration(0x0101)->_target(), nullptr);
}

TEST_F(ManagerTest, ActionsMayChangeTheRegistrations) {
    const auto registerQuit = [this] {
        manager.registerHotkey(1, SEL("quit"), host, true, false, false, false);
    };
    const auto press = [this] { service.press({1, hotkeyCommandMask}); };

    registerQuit();
    host.onAction = [&] { manager.unregisterHotkey(1, true, false, false, false); };
    press();
    EXPECT_TRUE(manager.registeredHotkeys().empty());

    registerQuit();
    host.onAction = [&] {
        for (std::uint32_t code = 1; code < 200; ++code)
            manager.registerHotkey(code, SEL("toggle"), host, true, false, false, false);
    };
    press();
    press();
    EXPECT_EQ(host.performed, (std::vector<std::string> {"quit", "quit", "toggle"}));

    manager.registerHotkey(
        1, {"x", [&] { manager.unregisterHotkey(1, true, 0, 0, 0); }}, true, false, false, false);
    press();
    EXPECT_EQ(registration(0x0101), nullptr);
}

TEST_F(ManagerTest, ATargetMayDieInsideItsOwnAction) {
    auto shared = std::make_shared<Host>();
    bool diedEarly = false;
    shared->onAction = [&] {
        const WeakReference reference(shared);
        shared.reset();
        diedEarly = reference.lock() == nullptr;
    };
    manager.registerHotkey(1, SEL("quit"), shared, true, false, false, false);
    service.press({1, hotkeyCommandMask});
    EXPECT_EQ(shared, nullptr);
    EXPECT_FALSE(diedEarly); // it lives until the action returns

    auto* lone = new Host;
    manager.registerHotkey(2, SEL("quit"), lone, true, false, false, false);
    lone->onAction = [lone] { delete lone; };
    service.press({2, hotkeyCommandMask});
    EXPECT_EQ(registration(0x0102)->_target(), nullptr);
}

TEST_F(ManagerTest, ActionsThatDoNotFitAreAnError) {
    manager.registerHotkey(1, SEL("missing"), host, true, false, false, false);
    manager.registerHotkey(2, SEL("open:"), host, true, false, false, false);
    EXPECT_THROW(service.press({1, hotkeyCommandMask}), NSException);
    EXPECT_THROW(service.press({2, hotkeyCommandMask}), NSException);
}

TEST_F(ManagerTest, TheHandlerAnswersSuccessWhateverComes) {
    const EventTypeSpec type {kEventClassKeyboard, kEventHotKeyPressed};
    const ApplicationEvent unknown {type, EventHotKeyID {0, 77}};
    const ApplicationEvent bare {type, std::nullopt};
    for (const EventRef event : {&unknown, &bare, EventRef()})
        EXPECT_EQ(KWHotKeyHandler(nullptr, event, nullptr), 0);

    // The identifier counts by its lower 16 bits, whatever the signature.
    manager.registerHotkey(1, SEL("quit"), host, true, false, false, false);
    const ApplicationEvent wide {type, EventHotKeyID {123, 0x10101}};
    EXPECT_EQ(KWHotKeyHandler(nullptr, &wide, nullptr), 0);
    EXPECT_EQ(host.performed.size(), 1u);
}

TEST_F(ManagerTest, TheIdentifierCarriesTheActionsName) {
    struct Spy final : HotkeyService {
        HotkeyCapabilities capabilities() const override { return {}; }
        EventHotKeyRef registerEventHotKey(
            std::uint32_t, std::uint32_t, EventHotKeyID identifier) override {
            identifiers.push_back(identifier);
            return EventHotKeyRef::none;
        }
        void unregisterEventHotKey(EventHotKeyRef) override { }
        HotkeyStatus status(EventHotKeyRef) const override { return HotkeyStatus::live; }
        void setStatusChangeHandler(std::function<void()>) override { }
        void setSuspended(bool) override { }
        std::vector<EventHotKeyID> identifiers;
    } spy;
    const ServiceScope inner(spy);

    const struct {
        const char* action;
        char bytes[5];
    } rows[] = {
        {"quitNow", "quit"}, {"go", "go\0\0"}, {"", "\0\0\0\0"}, {"Äpfel", "\x80pfe"},
        {"open✓", "\0\0\0\0"}, // one character without a form, and there is none for the name
    };
    for (const auto& row : rows) {
        manager.registerHotkey(0xFFFF, SEL(row.action), host, true, false, false, false);
        std::uint32_t signature = 0;
        std::memcpy(&signature, row.bytes, sizeof signature);
        EXPECT_EQ(spy.identifiers.back(), (EventHotKeyID {signature, 0x100FF})) << row.action;
        EXPECT_EQ(fourCharCodeToOSType(row.action), signature) << row.action;
    }
    manager.unregisterHotkey(0xFFFF, true, false, false, false);
}

TEST_F(ManagerTest, SuspensionsOverlap) {
    manager.registerHotkey(1, SEL("quit"), host, true, false, false, false);
    {
        const HotkeySuspension outer;
        { const HotkeySuspension inner; }
        EXPECT_FALSE(service.press({1, hotkeyCommandMask}));
    }
    EXPECT_TRUE(service.press({1, hotkeyCommandMask}));
}

} // namespace
