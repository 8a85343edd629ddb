// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11Connection.h>

#include <xkbcommon/xkbcommon-x11.h>

namespace kw {

namespace {

constexpr int newKeyboardEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
constexpr int mapEvents = XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
constexpr int stateEvents = XCB_XKB_EVENT_TYPE_STATE_NOTIFY;

void selectKeyboardEvents(xcb_connection_t* xcb, xcb_xkb_device_spec_t keyboard) {
    constexpr int newKeyboards =
        XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_GEOMETRY | XCB_XKB_NKN_DETAIL_DEVICE_ID;
    constexpr int groups = XCB_XKB_STATE_PART_GROUP_STATE;
    constexpr int mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS
        | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    xcb_xkb_select_events_details_t details {};
    details.affectNewKeyboard = details.newKeyboardDetails = newKeyboards;
    details.affectState = details.stateDetails = groups;
    xcb_xkb_select_events_aux(xcb, keyboard, newKeyboardEvents | mapEvents | stateEvents, 0, 0,
        mapParts, mapParts, &details);
}

std::uint8_t xkbTypeOf(const xcb_generic_event_t& event) { return event.pad0; }

} // namespace

std::unique_ptr<X11Connection> X11Connection::open(const std::string& displayName) {
    std::unique_ptr<X11Connection> connection(new X11Connection(
        xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), nullptr)));
    if (connection->isLost() || connection->m_keyboard < 0)
        return nullptr;
    return connection;
}

X11Connection::X11Connection(xcb_connection_t* xcb)
    : m_xcb(xcb) {
    if (isLost()
        || !xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION,
            XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr,
            &m_firstXkbEvent, nullptr))
        return;
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)); screen.rem > 0;
        xcb_screen_next(&screen))
        m_rootWindows.push_back(screen.data->root);
    m_keyboard = xkb_x11_get_core_keyboard_device_id(xcb);
    if (m_keyboard >= 0)
        selectKeyboardEvents(xcb, static_cast<xcb_xkb_device_spec_t>(m_keyboard));
}

X11Connection::~X11Connection() { xcb_disconnect(m_xcb); }

void X11Connection::synchronize() {
    xcbReply(xcb_get_input_focus_reply, m_xcb, xcb_get_input_focus(m_xcb));
}

XcbPointer<xcb_generic_event_t> X11Connection::nextEvent() {
    return XcbPointer<xcb_generic_event_t>(xcb_poll_for_event(m_xcb));
}

XcbPointer<xcb_generic_event_t> X11Connection::nextQueuedEvent() {
    return XcbPointer<xcb_generic_event_t>(xcb_poll_for_queued_event(m_xcb));
}

bool X11Connection::isMappingChange(const xcb_generic_event_t& event) const {
    if (eventType(event) == m_firstXkbEvent)
        return xkbTypeOf(event) == XCB_XKB_NEW_KEYBOARD_NOTIFY
            || xkbTypeOf(event) == XCB_XKB_MAP_NOTIFY;
    return eventType(event) == XCB_MAPPING_NOTIFY;
}

const xcb_xkb_state_notify_event_t* X11Connection::groupChange(
    const xcb_generic_event_t& event) const {
    if (eventType(event) != m_firstXkbEvent || xkbTypeOf(event) != XCB_XKB_STATE_NOTIFY)
        return nullptr;
    return reinterpret_cast<const xcb_xkb_state_notify_event_t*>(&event);
}

} // namespace kw
