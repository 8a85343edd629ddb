// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11HotkeyService.h>

#include <KWToolkit/platform/Platform.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace kw {

namespace {

constexpr std::uint32_t smallestKeyCode = 8;
constexpr std::uint32_t largestKeyCode = 255;
constexpr std::uint32_t knownModifiers =
    hotkeyCommandMask | hotkeyShiftMask | hotkeyOptionMask | hotkeyControlMask;

// In seconds.
constexpr double retryInterval = 2;
constexpr double heldKeysInterval = 0.03;

std::bitset<256> keysDown(const xcb_query_keymap_reply_t& keymap) {
    std::bitset<256> keys;
    for (std::size_t key = 0; key < keys.size(); ++key)
        keys[key] = keymap.keys[key / 8] >> key % 8 & 1;
    return keys;
}

} // namespace

X11HotkeyService::X11HotkeyService(std::string displayName)
    : m_displayName(std::move(displayName))
    , m_runLoop(Platform::runLoop()) {
    connect();
}

X11HotkeyService::~X11HotkeyService() {
    for (const auto timer : {m_passTimer, m_retryTimer, m_heldKeysTimer})
        m_runLoop.cancel(timer);
    disconnect();
}

HotkeyCapabilities X11HotkeyService::capabilities() const {
    return {.isAvailable = isConnected(), .reportsConflicts = true, .choosesKeys = true};
}

EventHotKeyRef X11HotkeyService::registerEventHotKey(
    std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID identifier) {
    if (keyCode < smallestKeyCode || keyCode > largestKeyCode || (modifiers & ~knownModifiers) != 0)
        return EventHotKeyRef::none;
    const EventHotKeyRef handle {++m_lastHandle};
    Hotkey& hotkey =
        m_hotkeys[handle] = {static_cast<xcb_keycode_t>(keyCode), modifiers, identifier};
    if (isConnected())
        grab(hotkey);
    schedule(m_passTimer, 0, &X11HotkeyService::pass);
    return handle;
}

void X11HotkeyService::unregisterEventHotKey(EventHotKeyRef hotkey) {
    const auto found = m_hotkeys.find(hotkey);
    if (found == m_hotkeys.end())
        return;
    if (found->second.isGrabbed)
        ungrab(found->second);
    m_hotkeys.erase(found);
    schedule(m_passTimer, 0, &X11HotkeyService::pass);
}

HotkeyStatus X11HotkeyService::status(EventHotKeyRef hotkey) const {
    const auto found = m_hotkeys.find(hotkey);
    if (found == m_hotkeys.end())
        return HotkeyStatus::unsupported;
    if (!isConnected())
        return HotkeyStatus::unavailable;
    return found->second.isLive ? HotkeyStatus::live : HotkeyStatus::heldElsewhere;
}

void X11HotkeyService::setStatusChangeHandler(std::function<void()> handler) {
    m_statusChangeHandler = std::move(handler);
}

void X11HotkeyService::setSuspended(bool suspended) {
    if (std::exchange(m_isSuspended, suspended) == suspended || !isConnected())
        return;
    if (suspended) {
        ungrabAll();
        m_presses.clear();
    } else {
        grabMissing();
    }
    schedule(m_passTimer, 0, &X11HotkeyService::pass);
}

void X11HotkeyService::connect() {
    m_connection = X11Connection::open(m_displayName);
    if (!m_connection)
        return;
    // A key that is held down then repeats its press alone, without releases in between.
    constexpr auto detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto keyboard = static_cast<xcb_xkb_device_spec_t>(m_connection->keyboard());
    xcbReply(xcb_xkb_per_client_flags_reply, *m_connection,
        xcb_xkb_per_client_flags(*m_connection, keyboard, detectable, detectable, 0, 0, 0));
    m_modifiers = X11Modifiers::of(*m_connection);
    m_watch = m_runLoop.watchDescriptor(m_connection->descriptor(), [this] { pass(); });
    grabMissing();
}

void X11HotkeyService::disconnect() {
    m_runLoop.unwatch(std::exchange(m_watch, RunLoop::Watch::none));
    m_connection.reset();
    for (auto& [handle, hotkey] : m_hotkeys)
        hotkey.isGrabbed = hotkey.isLive = false;
    m_pressedKeys.reset();
    m_heldKeys.reset();
}

void X11HotkeyService::grab(Hotkey& hotkey) {
    hotkey.bits = m_modifiers.bits(hotkey.modifiers);
    hotkey.isLive = false;
    // The server would let one client grab twice, and then give both back at once.
    if (std::ranges::any_of(m_hotkeys, [&](const auto& entry) {
            const Hotkey& other = entry.second;
            return other.isGrabbed && other.keyCode == hotkey.keyCode && other.bits == hotkey.bits;
        }))
        return;

    const auto keymapRequest = xcb_query_keymap(*m_connection);
    std::vector<xcb_void_cookie_t> requests;
    for (const xcb_window_t root : m_connection->rootWindows()) {
        for (const std::uint16_t bits : m_modifiers.bitsWithLocks(hotkey.bits))
            requests.push_back(xcb_grab_key_checked(*m_connection, /*owner_events*/ false, root,
                bits, hotkey.keyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    const auto keymap = xcbReply(xcb_query_keymap_reply, *m_connection, keymapRequest);
    bool isRefused = false;
    for (const xcb_void_cookie_t request : requests)
        isRefused |=
            XcbPointer<xcb_generic_error_t>(xcb_request_check(*m_connection, request)) != nullptr;

    hotkey.isLive = hotkey.isGrabbed = !isRefused && isConnected();
    if (!hotkey.isLive || m_isSuspended)
        ungrab(hotkey);
    else if (keymap && keysDown(*keymap)[hotkey.keyCode])
        m_heldKeys.set(hotkey.keyCode);
}

void X11HotkeyService::grabMissing() {
    for (auto& [handle, hotkey] : m_hotkeys) {
        if (hotkey.isGrabbed)
            continue;
        const bool wasLive = hotkey.isLive;
        grab(hotkey);
        m_hasStatusNews |= hotkey.isLive != wasLive;
    }
}

void X11HotkeyService::ungrab(Hotkey& hotkey) {
    hotkey.isGrabbed = false;
    for (const xcb_window_t root : m_connection->rootWindows()) {
        for (const std::uint16_t bits : m_modifiers.bitsWithLocks(hotkey.bits))
            xcb_ungrab_key(*m_connection, hotkey.keyCode, root, bits);
    }
    m_connection->synchronize();
}

void X11HotkeyService::ungrabAll() {
    for (auto& [handle, hotkey] : m_hotkeys)
        hotkey.isGrabbed = false;
    for (const xcb_window_t root : m_connection->rootWindows())
        xcb_ungrab_key(*m_connection, XCB_GRAB_ANY, root, XCB_MOD_MASK_ANY);
    m_connection->synchronize();
}

void X11HotkeyService::pass() {
    if (m_connection)
        readEvents();
    if (needsRetry())
        schedule(m_retryTimer, retryInterval, &X11HotkeyService::retry);
    if (m_heldKeys.any())
        schedule(m_heldKeysTimer, heldKeysInterval, &X11HotkeyService::checkHeldKeys);
    callHost();
}

void X11HotkeyService::readEvents() {
    for (;;) {
        // One look at the socket: what is left in it brings the loop back here.
        for (auto event = m_connection->nextEvent(); event; event = m_connection->nextQueuedEvent())
            handle(*event);
        // Once for all the events that one change of the mapping comes in.
        if (!std::exchange(m_isMappingStale, false))
            break;
        readMapping();
    }
    if (!isConnected()) {
        disconnect();
        m_hasStatusNews = true;
    }
}

void X11HotkeyService::handle(const xcb_generic_event_t& event) {
    if (m_connection->isMappingChange(event))
        m_isMappingStale = true;
    else if (eventType(event) == XCB_KEY_PRESS)
        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
    else if (eventType(event) == XCB_KEY_RELEASE)
        handleRelease(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
}

void X11HotkeyService::handlePress(const xcb_key_press_event_t& event) {
    if (m_pressedKeys[event.detail] || m_heldKeys[event.detail])
        return; // auto-repeat
    m_pressedKeys.set(event.detail);
    const auto bits = m_modifiers.bitsOfState(event.state);
    const auto pressed = std::ranges::find_if(m_hotkeys, [&](const auto& entry) {
        const Hotkey& hotkey = entry.second;
        return hotkey.isGrabbed && hotkey.keyCode == event.detail && hotkey.bits == bits;
    });
    if (pressed != m_hotkeys.end())
        m_presses.push_back(pressed->first);
}

void X11HotkeyService::handleRelease(xcb_keycode_t keyCode) {
    m_pressedKeys.reset(keyCode);
    m_heldKeys.reset(keyCode);
    // The first press made the server send us all keys; with its release that may be over, and the
    // releases of the others go elsewhere.
    m_heldKeys |= std::exchange(m_pressedKeys, {});
}

void X11HotkeyService::readMapping() {
    const X11Modifiers modifiers = X11Modifiers::of(*m_connection);
    if (modifiers != m_modifiers) {
        ungrabAll();
        m_modifiers = modifiers;
    }
    if (!m_isSuspended)
        grabMissing();
}

void X11HotkeyService::callHost() {
    const bool hasNews = std::exchange(m_hasStatusNews, false);
    const auto handler = hasNews ? m_statusChangeHandler : nullptr;
    const auto press = hasNews ? std::nullopt : takePress();
    if (!m_presses.empty())
        schedule(m_passTimer, 0, &X11HotkeyService::pass);
    // The last thing a pass does: the host may throw, nest a loop, or destroy the service.
    if (handler)
        handler();
    else if (press)
        GetApplicationEventTarget().sendEvent({{kEventClassKeyboard, kEventHotKeyPressed}, press});
}

std::optional<EventHotKeyID> X11HotkeyService::takePress() {
    while (!m_presses.empty()) {
        const auto hotkey = m_hotkeys.find(m_presses.front());
        m_presses.pop_front();
        if (hotkey != m_hotkeys.end())
            return hotkey->second.identifier;
    }
    return std::nullopt;
}

bool X11HotkeyService::needsRetry() const {
    if (!m_connection)
        return !m_hotkeys.empty();
    return !m_isSuspended && std::ranges::any_of(m_hotkeys, [](const auto& entry) {
        return !entry.second.isGrabbed;
    });
}

void X11HotkeyService::retry() {
    if (m_connection) {
        if (!m_isSuspended)
            grabMissing();
    } else {
        connect();
        m_hasStatusNews |= isConnected();
    }
    pass();
}

void X11HotkeyService::checkHeldKeys() {
    if (m_connection) {
        const auto keymap =
            xcbReply(xcb_query_keymap_reply, *m_connection, xcb_query_keymap(*m_connection));
        // First what came before the answer: presses that the held keys repeated.
        readEvents();
        if (keymap)
            m_heldKeys &= keysDown(*keymap);
    }
    pass();
}

void X11HotkeyService::schedule(
    RunLoop::Timer& timer, double delay, void (X11HotkeyService::*task)()) {
    if (timer != RunLoop::Timer::none)
        return;
    timer = m_runLoop.callAfter(delay, [this, &timer, task] {
        timer = RunLoop::Timer::none;
        (this->*task)();
    });
}

} // namespace kw
