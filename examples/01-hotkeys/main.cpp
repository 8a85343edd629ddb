// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A key combination that works whichever application is in front: 01-hotkeys ctrl+alt+k
#include <KWToolkit/KWToolkit.h>

#include <sys/signalfd.h>
#include <unistd.h>
#include <xcb/xcb_keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

constexpr const char* usage =
    "usage: 01-hotkeys [MODIFIER+]...KEY\n"
    "  MODIFIER  ctrl, alt (or option), super (or cmd), shift\n"
    "  KEY       what is printed on the key, such as k, F5, space, Up; or its code, such as 045\n"
    "Prints a line for each press, until it is interrupted.\n";

struct Combination {
    std::uint32_t keyCode = 0;
    bool command = false;
    bool control = false;
    bool option = false;
    bool shift = false;
};

/// The code of a key of the keyboard in use.
std::uint32_t keyCodeOf(const std::string& name) {
    // A digit alone is a key.
    if (name.size() > 1 && name.find_first_not_of("0123456789") == std::string::npos)
        return static_cast<std::uint32_t>(std::strtoul(name.c_str(), nullptr, 10));

    const xkb_keysym_t keysym = xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> keys(
        xcb_key_symbols_alloc(display.get()), &xcb_key_symbols_free);
    const std::unique_ptr<xcb_keycode_t, decltype(&std::free)> codes(
        keysym == XKB_KEY_NoSymbol ? nullptr : xcb_key_symbols_get_keycode(keys.get(), keysym),
        &std::free);
    if (!codes)
        throw std::invalid_argument("this keyboard has no key '" + name + "'");
    return *codes;
}

Combination parse(std::string text) {
    static const std::map<std::string, bool Combination::*> modifiers {
        {"alt", &Combination::option},
        {"cmd", &Combination::command},
        {"command", &Combination::command},
        {"control", &Combination::control},
        {"ctrl", &Combination::control},
        {"option", &Combination::option},
        {"shift", &Combination::shift},
        {"super", &Combination::command},
    };
    Combination combination;
    for (auto plus = text.find('+'); plus != std::string::npos; plus = text.find('+')) {
        const auto modifier = modifiers.find(text.substr(0, plus));
        if (modifier == modifiers.end())
            throw std::invalid_argument("there is no modifier '" + text.substr(0, plus) + "'");
        combination.*modifier->second = true;
        text.erase(0, plus + 1);
    }
    combination.keyCode = keyCodeOf(text);
    return combination;
}

const char* describe(kw::HotkeyStatus status) {
    switch (status) {
    case kw::HotkeyStatus::live:
        return "is live: press it in any window";
    case kw::HotkeyStatus::heldElsewhere:
        return "is held by another program; waiting for it to be given back";
    case kw::HotkeyStatus::unavailable:
        return "is out of reach: the display is gone; waiting for it to come back";
    case kw::HotkeyStatus::unsupported:
        break;
    }
    return "cannot be registered on this desktop";
}

/// Ends the run loop on an interrupt, rather than the program.
void stopOnSignal(kw::RunLoop& loop) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    loop.watchDescriptor(signalfd(-1, &signals, SFD_CLOEXEC), [&loop] { loop.stop(); });
}

int run(const std::string& name) {
    kw::RunLoop& loop = kw::Platform::runLoop();
    stopOnSignal(loop);
    if (!kw::Platform::hotkeys().capabilities().isAvailable) {
        std::cerr << "01-hotkeys: there is no X display to register with (is DISPLAY set?)\n";
        return 1;
    }

    const Combination keys = parse(name);
    auto& hotkeys = kw::KWGlobalHotkeyManager::hotkeyManager();
    hotkeys.registerHotkey(keys.keyCode,
        {"count",
            [&name, count = 0]() mutable {
                std::cout << name << " " << ++count << '\n' << std::flush;
            }},
        keys.command, keys.control, keys.option, keys.shift);

    const auto status = [&] {
        return *hotkeys.statusOfHotkey(
            keys.keyCode, keys.command, keys.control, keys.option, keys.shift);
    };
    const auto tellStatus = [&] {
        std::cout << name << " " << describe(status()) << '\n' << std::flush;
    };
    if (status() == kw::HotkeyStatus::unsupported)
        throw std::invalid_argument("'" + name + "' " + describe(status()));
    hotkeys.setStatusChangeHandler(tellStatus);
    tellStatus();

    loop.run();
    hotkeys.unregisterHotkey(keys.keyCode, keys.command, keys.control, keys.option, keys.shift);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || argv[1][0] == '-') {
        std::cerr << usage;
        return 2;
    }
    try {
        return run(argv[1]);
    } catch (const std::invalid_argument& error) {
        std::cerr << "01-hotkeys: " << error.what() << "\n" << usage;
        return 2;
    }
}
