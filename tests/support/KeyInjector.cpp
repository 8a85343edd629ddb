// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <tests/support/KeyInjector.h>

#include <xcb/xtest.h>

#include <algorithm>
#include <stdexcept>

namespace kw::test {

KeyInjector::KeyInjector(const std::string& displayName)
    : m_xcb(xcb_connect(displayName.c_str(), nullptr)) {
    if (xcb_connection_has_error(m_xcb))
        throw std::runtime_error("cannot open display " + displayName);
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root;
    xcbReply(xcb_xkb_use_extension_reply, m_xcb, xcb_xkb_use_extension(m_xcb, 1, 0));
}

KeyInjector::~KeyInjector() { xcb_disconnect(m_xcb); }

xcb_keycode_t KeyInjector::keyCode(xcb_keysym_t keysym) const {
    const xcb_setup_t& setup = *xcb_get_setup(m_xcb);
    const auto mapping = xcbReply(xcb_get_keyboard_mapping_reply, m_xcb,
        xcb_get_keyboard_mapping(m_xcb, setup.min_keycode,
            static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1)));
    if (!mapping)
        return 0;
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int key = setup.min_keycode; key <= setup.max_keycode; ++key) {
        if (keysyms[(key - setup.min_keycode) * mapping->keysyms_per_keycode] == keysym)
            return static_cast<xcb_keycode_t>(key);
    }
    return 0;
}

void KeyInjector::press(const std::vector<xcb_keysym_t>& keysyms) {
    for (const xcb_keysym_t keysym : keysyms)
        press(keysym);
}

void KeyInjector::release(const std::vector<xcb_keysym_t>& keysyms) {
    for (const xcb_keysym_t keysym : keysyms)
        release(keysym);
}

void KeyInjector::type(std::vector<xcb_keysym_t> keysyms) {
    press(keysyms);
    std::ranges::reverse(keysyms);
    release(keysyms);
}

void KeyInjector::moveMouse(int x, int y) {
    xcb_test_fake_input(m_xcb, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_root,
        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    synchronize();
}

void KeyInjector::click() {
    holdButton(true);
    holdButton(false);
}

void KeyInjector::holdButton(bool isDown) {
    xcb_test_fake_input(m_xcb, isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME,
        XCB_NONE, 0, 0, 0);
    synchronize();
}

void KeyInjector::lockModifiers(std::uint8_t modifiers) {
    xcb_xkb_latch_lock_state(m_xcb, XCB_XKB_ID_USE_CORE_KBD, 0xff, modifiers, 0, 0, 0, 0, 0);
    synchronize();
}

void KeyInjector::lockGroup(std::uint8_t group) {
    xcb_xkb_latch_lock_state(m_xcb, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    synchronize();
}

void KeyInjector::setModifierKeys(const std::vector<std::vector<xcb_keysym_t>>& keysyms) {
    std::size_t width = 0;
    for (const auto& keys : keysyms)
        width = std::max(width, keys.size());
    std::vector<xcb_keycode_t> keyCodes(8 * width);
    for (std::size_t modifier = 0; modifier < keysyms.size(); ++modifier)
        std::ranges::transform(keysyms[modifier], keyCodes.begin() + modifier * width,
            [this](xcb_keysym_t keysym) { return keyCode(keysym); });
    xcbReply(xcb_set_modifier_mapping_reply, m_xcb,
        xcb_set_modifier_mapping(m_xcb, static_cast<std::uint8_t>(width), keyCodes.data()));
}

bool KeyInjector::grab(xcb_keysym_t keysym, std::uint16_t modifiers) {
    return !XcbPointer<xcb_generic_error_t>(xcb_request_check(m_xcb,
        xcb_grab_key_checked(m_xcb, false, m_root, modifiers, keyCode(keysym), XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC)));
}

void KeyInjector::ungrab(xcb_keysym_t keysym, std::uint16_t modifiers) {
    xcb_ungrab_key(m_xcb, keyCode(keysym), m_root, modifiers);
    synchronize();
}

int KeyInjector::takePresses() {
    synchronize();
    int presses = 0;
    while (const XcbPointer<xcb_generic_event_t> event {xcb_poll_for_event(m_xcb)})
        presses += event->response_type == XCB_KEY_PRESS;
    return presses;
}

void KeyInjector::fake(std::uint8_t type, xcb_keysym_t keysym) {
    xcb_test_fake_input(m_xcb, type, keyCode(keysym), XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    synchronize();
}

void KeyInjector::synchronize() {
    xcbReply(xcb_get_input_focus_reply, m_xcb, xcb_get_input_focus(m_xcb));
}

} // namespace kw::test
