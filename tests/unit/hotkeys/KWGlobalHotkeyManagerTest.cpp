// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/HotkeySuspension.h>
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
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
        while (!manager.registeredHotkeys().empty())
            manager.unregisterHotkey(
                manager.registeredHotkeys().begin()->first, false, false, false, false);
    }

    HeadlessHotkeyService service;
    ServiceScope<HeadlessHotkeyService> scope {service};
    KWGlobalHotkeyManager& manager = KWGlobalHotkeyManager::hotkeyManager();
    Host host;

    /// Command with the key.
    void registerHotkey(std::uint32_t code, const char* action, WeakReference target) {
        manager.registerHotkey(code, SEL(action), std::move(target), true, false, false, false);
    }
    void unregisterHotkey(std::uint32_t code) {
        manager.unregisterHotkey(code, true, false, false, false);
    }
    bool press(std::uint32_t code) { return service.press({code, hotkeyCommandMask}); }

    const KWHotkeyObject* registration(std::uint16_t key) {
        const auto found = manager.registeredHotkeys().find(key);
        return found == manager.registeredHotkeys().end() ? nullptr : found->second.get();
    }
};

TEST_F(ManagerTest, ThereIsOneHoweverItIsAskedFor) {
    registerHotkey(40, "quit", host);
    KWGlobalHotkeyManager::initialize();
    EXPECT_EQ(&KWGlobalHotkeyManager::sharedFramistan(), &manager);
    EXPECT_EQ(&KWGlobalHotkeyManager::allocWithZone().init(), &manager);
    EXPECT_EQ(manager.registeredHotkeys().size(), 1u);
    press(40);
    EXPECT_EQ(host.performed.size(), 1u); // and one handler
}

TEST_F(ManagerTest, KeysAreTheKeyCodePlusTheMask) {
    const struct {
        std::uint32_t keycode;
        bool command, control, option, shift;
        std::uint16_t key;
    } rows[] = {
        {40, false, false, false, false, 0x0028}, {40, true, false, false, false, 0x0128},
        {40, false, false, false, true, 0x0228}, {40, false, true, false, false, 0x1028},
        {40, false, false, true, false, 0x0828}, {0, true, true, true, true, 0x1B00},
        {0x10029, false, false, false, false, 0x0029}, // reduced to 16 bits
        {0x012A, true, false, false, false, 0x022A}, // an addition, not a bitwise or
    };
    int presses = 0;
    for (const auto& row : rows) {
        manager.registerHotkey(
            row.keycode, SEL("quit"), host, row.command, row.control, row.option, row.shift);
        ASSERT_NE(registration(row.key), nullptr) << row.key;
        EXPECT_EQ(registration(row.key)->keycode(), static_cast<std::uint16_t>(row.keycode));
        if (row.keycode > 255)
            continue; // no key of a keyboard
        const Hotkey same {.hasKey = true,
            .keycode = static_cast<std::uint16_t>(row.keycode),
            .command = row.command,
            .option = row.option,
            .control = row.control,
            .shift = row.shift};
        EXPECT_EQ(manager.statusOfHotkey(same), HotkeyStatus::live);
        manager.registerHotkey(same, {"count", [&] { ++presses; }});
        EXPECT_TRUE(service.press({row.keycode, row.key & 0xFF00u}));
        manager.unregisterHotkey(same);
        EXPECT_EQ(registration(row.key), nullptr);
    }
    EXPECT_EQ(presses, 6);
}

TEST_F(ManagerTest, AHotkeyThatNamesNoKeyIsIgnored) {
    const Hotkey none {.command = true};
    manager.registerHotkey(none, SEL("quit"), host);
    manager.registerHotkey(none, {"quit", nullptr});
    EXPECT_TRUE(manager.registeredHotkeys().empty());
    registerHotkey(0, "quit", host);
    manager.unregisterHotkey(none);
    EXPECT_EQ(manager.statusOfHotkey(none), std::nullopt);
    EXPECT_EQ(manager.registeredHotkeys().size(), 1u);
}

TEST_F(ManagerTest, ReplacesAndGivesBackOnlyTheSameCombination) {
    Host second;
    registerHotkey(40, "quit", host);
    registerHotkey(40, "toggle", second);
    manager.registerHotkey(40, SEL("quit"), host, true, false, true, false);
    EXPECT_EQ(service.unregisterCount(), 1);
    EXPECT_EQ(registration(0x0128)->_target().get(), &second);
    EXPECT_EQ(registration(0x0128)->_action(), SEL("toggle"));
    EXPECT_TRUE(press(40));
    EXPECT_TRUE(host.performed.empty());
    EXPECT_EQ(second.performed, std::vector<std::string> {"toggle"});

    manager.unregisterHotkey(40, false, true, false, false);
    EXPECT_EQ(manager.registeredHotkeys().size(), 2u);
    unregisterHotkey(40);
    unregisterHotkey(40);
    EXPECT_EQ(service.registrationCount(), 1u);
    EXPECT_EQ(service.unregisterCount(), 2);
    EXPECT_FALSE(press(40));
}

TEST_F(ManagerTest, RefusedCombinationsStayRegistered) {
    service.setHeldElsewhere({40, hotkeyCommandMask}, true);
    registerHotkey(40, "quit", host);
    registerHotkey(256, "quit", host);
    const auto status = [this](std::uint32_t code) {
        return manager.statusOfHotkey(code, true, false, false, false);
    };
    EXPECT_EQ(status(40), HotkeyStatus::heldElsewhere);
    EXPECT_EQ(status(256), HotkeyStatus::unsupported);
    EXPECT_EQ(status(41), std::nullopt);

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
    registerHotkey(9, "quit", host);
    EXPECT_EQ(status(9), HotkeyStatus::unavailable);
}

TEST_F(ManagerTest, ActionsMayChangeTheRegistrations) {
    registerHotkey(1, "quit", host);
    host.onAction = [this] { unregisterHotkey(1); };
    press(1);
    EXPECT_TRUE(manager.registeredHotkeys().empty());

    registerHotkey(1, "quit", host);
    host.onAction = [this] {
        for (std::uint32_t code = 1; code < 200; ++code)
            registerHotkey(code, "toggle", host);
    };
    press(1);
    press(1);
    EXPECT_EQ(host.performed, (std::vector<std::string> {"quit", "quit", "toggle"}));

    manager.registerHotkey(1, {"give", [this] { unregisterHotkey(1); }}, true, false, false, false);
    EXPECT_EQ(registration(0x0101)->_action(), SEL("give"));
    EXPECT_EQ(registration(0x0101)->_target(), nullptr);
    press(1);
    EXPECT_EQ(registration(0x0101), nullptr);
}

TEST_F(ManagerTest, ATargetMayDieBeforeAndInsideItsOwnAction) {
    auto shared = std::make_shared<Host>();
    bool diedEarly = false;
    shared->onAction = [&] {
        const WeakReference reference(shared);
        shared.reset();
        diedEarly = reference.lock() == nullptr;
    };
    registerHotkey(1, "quit", shared);
    press(1);
    EXPECT_EQ(shared, nullptr);
    EXPECT_FALSE(diedEarly); // it lives until the action returns
    EXPECT_TRUE(press(1)); // for nobody
    EXPECT_EQ(registration(0x0101)->_target(), nullptr);

    auto* lone = new Host;
    registerHotkey(2, "quit", lone);
    lone->onAction = [lone] { delete lone; };
    press(2);
    EXPECT_EQ(registration(0x0102)->_target(), nullptr);
}

TEST_F(ManagerTest, TheHandlerAnswersSuccessWhateverComes) {
    const EventTypeSpec type {kEventClassKeyboard, kEventHotKeyPressed};
    const ApplicationEvent unknown {type, EventHotKeyID {0, 77}};
    const ApplicationEvent bare {type, std::nullopt};
    // The identifier counts by its lower 16 bits, whatever the signature.
    const ApplicationEvent wide {type, EventHotKeyID {123, 0x10101}};
    registerHotkey(1, "quit", host);
    for (const EventRef event : {&unknown, &bare, EventRef(), &wide})
        EXPECT_EQ(KWHotKeyHandler(nullptr, event, nullptr), 0);
    EXPECT_EQ(host.performed.size(), 1u);
}

TEST_F(ManagerTest, TheIdentifierCarriesTheActionsName) {
    static EventHotKeyID pressed; // handlers stay until the process ends
    GetApplicationEventTarget().installEventHandler(
        [](EventHandlerCallRef, EventRef event, void*) {
            pressed = event->directObject.value_or(EventHotKeyID {});
            return eventNotHandledErr;
        },
        {kEventClassKeyboard, kEventHotKeyPressed}, nullptr);
    const struct {
        const char* action;
        char bytes[5];
    } rows[] = {
        {"quitNow", "quit"}, {"go", "go\0\0"}, {"", "\0\0\0\0"}, {"Äpfel", "\x80pfe"},
        {"open✓", "\0\0\0\0"}, // one character without a form, and there is none for the name
    };
    for (const auto& row : rows) {
        manager.registerHotkey(255, {row.action, [] { }}, true, false, false, true);
        service.press({255, hotkeyCommandMask | hotkeyShiftMask});
        std::uint32_t signature = 0;
        std::memcpy(&signature, row.bytes, sizeof signature);
        EXPECT_EQ(pressed, (EventHotKeyID {signature, 0x03FF})) << row.action;
        EXPECT_EQ(fourCharCodeToOSType(row.action), signature) << row.action;
    }
}

TEST_F(ManagerTest, SuspensionsOverlap) {
    registerHotkey(1, "quit", host);
    {
        const HotkeySuspension outer;
        { const HotkeySuspension inner; }
        EXPECT_FALSE(press(1));
    }
    EXPECT_TRUE(press(1));
}

} // namespace
