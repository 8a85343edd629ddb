// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// From a key press to its action: the toolkit beside a bare client of the same X server.
#include <KWToolkit/KWToolkit.h>
#include <backends/linux/x11/X11HotkeyService.h>
#include <tests/support/KeyInjector.h>
#include <tests/support/PrivateDisplay.h>

#include <poll.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

namespace {

constexpr int warmUps = 20;
constexpr int presses = 1000;

using Microseconds = std::chrono::duration<double, std::micro>;

/// A program of its own: grabs a key and waits for it.
class BareClient {
public:
    BareClient(const std::string& displayName, xcb_keycode_t keyCode)
        : m_xcb(xcb_connect(displayName.c_str(), nullptr)) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root;
        const kw::XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_xcb,
            xcb_grab_key_checked(
                m_xcb, false, root, 0, keyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        if (error)
            throw std::runtime_error("the bare client cannot grab its key");
    }
    ~BareClient() { xcb_disconnect(m_xcb); }

    void waitForPress() {
        for (;;) {
            while (const kw::XcbPointer<xcb_generic_event_t> event {xcb_poll_for_event(m_xcb)}) {
                if (event->response_type == XCB_KEY_PRESS)
                    return;
            }
            pollfd readable {xcb_get_file_descriptor(m_xcb), POLLIN, 0};
            ::poll(&readable, 1, -1);
        }
    }

private:
    xcb_connection_t* m_xcb;
};

/// Presses the key, waits for its action, releases it. The time from the press to the action.
double measure(
    xcb_connection_t* keyboard, xcb_keycode_t keyCode, const std::function<void()>& wait) {
    const auto begin = std::chrono::steady_clock::now();
    xcb_test_fake_input(keyboard, XCB_KEY_PRESS, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(keyboard);
    wait();
    const auto end = std::chrono::steady_clock::now();
    xcb_test_fake_input(keyboard, XCB_KEY_RELEASE, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    kw::xcbReply(xcb_get_input_focus_reply, keyboard, xcb_get_input_focus(keyboard));
    return Microseconds(end - begin).count();
}

double percentile(std::vector<double>& times, double part) {
    const auto place =
        times.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(times.size() - 1));
    std::ranges::nth_element(times, place);
    return *place;
}

} // namespace

int main() {
    kw::test::PrivateDisplay display;
    const kw::test::KeyInjector keys(display.name());
    const auto toolkitKey = keys.keyCode(XKB_KEY_k);
    const auto bareKey = keys.keyCode(XKB_KEY_j);

    kw::X11HotkeyService service(display.name());
    const kw::ServiceScope scope(service);
    int actions = 0;
    kw::KWGlobalHotkeyManager::hotkeyManager().registerHotkey(
        toolkitKey, {"count", [&] { ++actions; }}, false, false, false, false);
    kw::RunLoop& loop = kw::Platform::runLoop();
    const auto waitForAction = [&] {
        const int before = actions;
        while (actions == before)
            loop.runOnce(1);
    };
    BareClient bare(display.name(), bareKey);
    const auto waitForPress = [&] { bare.waitForPress(); };

    xcb_connection_t* const keyboard = xcb_connect(display.name().c_str(), nullptr);
    std::vector<double> toolkitTimes;
    std::vector<double> bareTimes;
    for (int i = 0; i < warmUps + presses; ++i) {
        // By turns, so that what else the machine does falls on both.
        const double toolkitTime = measure(keyboard, toolkitKey, waitForAction);
        const double bareTime = measure(keyboard, bareKey, waitForPress);
        if (i >= warmUps) {
            toolkitTimes.push_back(toolkitTime);
            bareTimes.push_back(bareTime);
        }
    }
    xcb_disconnect(keyboard);

    std::printf("Press to action, %d presses each, in microseconds\n", presses);
    std::printf("%8s %10s %10s %10s\n", "", "toolkit", "bare xcb", "ratio");
    for (const auto& [name, part] : {std::pair {"median", 0.5}, std::pair {"p99", 0.99}}) {
        const double toolkit = percentile(toolkitTimes, part);
        const double other = percentile(bareTimes, part);
        std::printf("%8s %10.1f %10.1f %10.2f\n", name, toolkit, other, toolkit / other);
    }
}
